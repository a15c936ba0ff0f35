#include <set>
#include <string>
#include <string_view>

#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/require.h"
#include "readers/gcc/code/program_code.h"
#include "readers/gcc/elf_image.h"

namespace velkor::testing {

namespace {

constexpr uint64_t kAddress = 0x8000;

// The code as a program: functions begin at places that the input chooses.
std::string ProgramOf(FuzzInput& input) {
  constexpr uint16_t kMachines[] = {ELF_ARM, ELF_ARM, ELF_X86_64, ELF_AARCH64};
  const uint32_t kind = input.Below(4);
  const bool isThumb = kind == 0;
  ElfImage image(kMachines[kind], kind > 1, ByteOrder::kLittle, true);
  std::vector<uint64_t> starts = {0};
  for (uint32_t count = input.Below(8); count > 0; --count) {
    starts.push_back(2 * input.Below(512));
  }
  const uint32_t code = image.AddCode(".text", std::string(input.Rest()), kAddress);
  image.AddSymbol(isThumb ? "$t" : kind == 1 ? "$a" : "$x", 0, code, kAddress);
  for (size_t i = 0; i < starts.size(); ++i) {
    image.AddSymbol("f" + std::to_string(i), ElfImage::kGlobalFunction, code,
                    kAddress + starts[i] + (isThumb ? 1 : 0), i % 3 == 0 ? 0 : 40);
  }
  return image.Build();
}

void CheckFunction(const ProgramCode& program, const ProgramCode::Function& function) {
  const FunctionCode& code = function.code;
  std::set<uint32_t> calls;
  for (const uint32_t call : code.calls) {
    Require(call < program.Functions().size(), "a call is of a function");
    Require(calls.insert(call).second, "a call is told once");
    Require(program.Meant(call) < program.Functions().size(), "a call means a function");
  }
  for (size_t i = 1; i < code.sites.size(); ++i) {
    Require(code.sites[i - 1] < code.sites[i], "sites are ordered");
  }
  Require(code.codeBytes < uint64_t{1} << 50, "a size is one");
  Require(code.doubt == CodeDoubt::kNone || (code.returns && code.usesFloatingPoint),
          "what is in doubt may do everything");
}

}  // namespace

void FuzzCode(std::string_view bytes) {
  FuzzInput input(bytes);
  const std::string made = bytes.starts_with("\x7F") ? std::string(bytes) : ProgramOf(input);
  const ElfFile elf(made);
  const ObjectFacts facts(elf);
  const CallFrames frames(elf);
  const ProgramCode program(elf, facts, frames);
  const ProgramCode again(elf, facts, frames);
  Require(program.Functions().size() == again.Functions().size(), "it is read alike twice");
  for (size_t i = 0; i < program.Functions().size(); ++i) {
    const ProgramCode::Function& function = program.Functions()[i];
    CheckFunction(program, function);
    Require(function.nameCount == 0 || program.Find(function.address) == i,
            "a function is found by its address");
    Require(function.code.codeBytes == again.Functions()[i].code.codeBytes &&
                function.code.calls == again.Functions()[i].code.calls &&
                function.code.sites == again.Functions()[i].code.sites,
            "it is read alike twice");
  }
}

}  // namespace velkor::testing
