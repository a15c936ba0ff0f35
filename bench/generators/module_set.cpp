#include "bench/generators/module_set.h"

#include <iterator>
#include <set>
#include <string>
#include <utility>

#include "bench/generators/random.h"

namespace velkor::bench {
namespace {

using Linkage = ModuleText::Linkage;

constexpr uint32_t kMostLinesOfFunction = 200;
constexpr uint32_t kCallableFunctions = 500;  // every module has more of them
constexpr uint32_t kVariables = 40;
constexpr uint32_t kGroup = 8;

constexpr const char* kDevices[] = {"uart",  "timer", "motor", "sensor",
                                    "flash", "panel", "clock", "valve"};
constexpr const char* kVerbs[] = {"read",  "write", "check", "start",
                                  "reset", "apply", "scale", "store"};
constexpr const char* kThings[] = {"frame", "level", "limit", "state",
                                   "queue", "speed", "input", "value"};
constexpr const char* kHelpers[] = {"ismul", "iumul", "lsadd", "lsmul", "lsdiv"};
constexpr const char* kInstructions[] = {
    "movw\tax,[hl]\t", "movw\t[hl],ax\t",    "mov\ta,[de]\t",  "mov\t[de],a\t",   "push\tax\t\t",
    "pop\tax\t\t",     "movw\tax,#01234H\t", "cmp\ta,#028H\t", "addw\tax,#02H\t", "subw\tax,#04H\t",
    "and\ta,#07FH\t",  "xch\ta,x\t\t",       "bnz\t$L0021\t",  "br\t$L0022\t",    "movw\tde,ax\t",
    "incw\thl\t\t",    "mov\ta,!0FE20H\t",   "movw\thl,sp\t",  "shl\ta,1\t\t",    "clr1\tcy\t\t",
};

template <size_t kCount>
const char* AnyOf(const char* const (&texts)[kCount], Random& random) {
  return texts[random.Below(kCount)];
}

// Of module and function alone, so that any module can call it.
std::string FunctionName(uint32_t module, uint32_t function) {
  return std::string(kDevices[module % std::size(kDevices)]) + std::to_string(module) + "_" +
         kVerbs[function % std::size(kVerbs)] + "_" +
         kThings[function / std::size(kVerbs) % std::size(kThings)] + std::to_string(function);
}

Linkage LinkageOf(uint32_t function) {
  return function % 5 == 4 ? Linkage::kStatic : Linkage::kGlobal;
}

class ModuleAuthor {
 public:
  ModuleAuthor(uint32_t module, ModuleText text, Random& random)
      : module_(module), text_(std::move(text)), random_(random) {}

  const ModuleText& Write() {
    for (uint32_t variable = 0; variable < kVariables; ++variable) {
      text_.DeclareVariable(VariableName(variable));
    }
    while (text_.LineCount() + kMostLinesOfFunction < ModuleText::kMaxLines) {
      WriteFunction();
      ++function_;
    }
    return text_;
  }

 private:
  std::string VariableName(uint32_t variable) const {
    return std::string(kDevices[module_ % std::size(kDevices)]) + "_variable" +
           std::to_string(variable);
  }

  void WriteFunction() {
    const std::string name = FunctionName(module_, function_);
    text_.DeclareFunction(name, LinkageOf(function_));
    text_.AddLabel(name);
    text_.DescribeFunction(name, 2 + 2 * random_.Below(16));
    WriteInstructions();
    for (uint32_t calls = random_.Below(4); calls > 0; --calls) {
      WriteCall();
      WriteInstructions();
    }
    CallGroup();
    text_.AddCode("\tret");
  }

  // Every eighth function calls the seven before it, every 64th also the seven eighth ones before
  // it, and so on: few functions stay uncalled, and chains stay short.
  void CallGroup() {
    for (uint32_t step = 1; (function_ + 1) % (step * kGroup) == 0; step *= kGroup) {
      for (uint32_t member = 1; member < kGroup; ++member) {
        Call(FunctionName(module_, function_ - member * step));
      }
    }
  }

  void WriteInstructions() {
    for (uint32_t count = 3 + random_.Below(14); count > 0; --count) {
      line_ = "\t";
      line_ += AnyOf(kInstructions, random_);
      line_ += "; source line ";
      line_ += std::to_string(text_.LineCount());
      text_.AddCode(line_);
    }
  }

  // Functions call earlier ones only.
  void WriteCall() {
    const uint32_t kind = random_.Below(16);
    if (kind == 0) {
      return CallHelper();
    }
    if (kind == 1) {
      return CallIndirectly();
    }
    if (kind < 6 && module_ > 1) {
      return CallOtherModule();
    }
    if (function_ > 0) {
      Call(FunctionName(module_, random_.Below(function_)));
    }
  }

  void CallHelper() {
    text_.AddCode(std::string("\tcallt\t[@@") + AnyOf(kHelpers, random_) + "]\t; helper");
  }

  void CallIndirectly() {
    const std::string variable = VariableName(random_.Below(kVariables));
    text_.AddCode("\tmovw\tax,!_" + variable);
    text_.DescribeCall(variable);
  }

  void CallOtherModule() {
    uint32_t function = random_.Below(kCallableFunctions);
    function -= LinkageOf(function) == Linkage::kStatic ? 1U : 0U;
    const std::string name = FunctionName(1 + random_.Below(module_ - 1), function);
    if (declared_.insert(name).second) {
      text_.DeclareFunction(name, Linkage::kGlobal);
    }
    Call(name);
  }

  void Call(const std::string& name) {
    text_.AddCode("\tcall\t!_" + name);
    text_.DescribeCall(name);
  }

  const uint32_t module_;
  uint32_t function_ = 0;
  ModuleText text_;
  Random& random_;
  std::string line_;
  std::set<std::string> declared_;  // functions of other modules
};

}  // namespace

void WriteModuleSet(uint64_t bytes, uint64_t seed, ProjectFolder& project) {
  Random random(seed);
  while (project.ModuleBytes() < bytes) {
    ModuleAuthor author(project.ModuleCount() + 1, project.NewModule(), random);
    project.AddModule(author.Write());
  }
}

}  // namespace velkor::bench
