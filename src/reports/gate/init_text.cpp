#include "reports/gate/init_text.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <set>

#include "reports/gate/bound_causes.h"
#include "reports/gate/gate_input.h"
#include "reports/gate/stack_figures.h"
#include "reports/gate/unlisted.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostMissing = 20;

// Sizes of the stack that main runs on, as linker scripts name them.
constexpr std::array<std::string_view, 6> kMainStacks = {"_Min_Stack_Size", "__stack_size__",
                                                         "__STACK_SIZE",    "Stack_Size",
                                                         "z_main_stack",    "_Stack_Size"};
// Likewise its end and its begin.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> kMainPlaces = {
    {{"__StackTop", "__StackLimit"}, {"__stack_top", "__stack_limit"}, {"_estack", "_sstack"}}};

bool IsBareKey(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-';
  });
}

bool IsCalledLikeAHandler(std::string_view name) {
  static constexpr std::string_view kEnds[] = {"_IRQHandler", "_Handler", "_isr", "_ISR",
                                               "_irq",        "_handler", "_IRQ"};
  static constexpr std::string_view kStarts[] = {"isr_", "ISR_", "irq_", "IRQ_", "__vector_"};
  return std::ranges::any_of(kEnds, [&](std::string_view end) { return name.ends_with(end); }) ||
         std::ranges::any_of(kStarts,
                             [&](std::string_view start) { return name.starts_with(start); });
}

class InitWriter {
 public:
  explicit InitWriter(const InitInput& input)
      : input_(input),
        result_(input.result),
        gate_{.result = result_,
              .configuration = configuration_,
              .facts = input.facts,
              .names = names_,
              .limits = {},
              .isConfigured = true},
        figures_(gate_, TargetTable::BuiltIn()) {}

  std::string Write() {
    WriteHead();
    WriteFigures();
    WriteMain();
    WriteTasks();
    WriteInterrupts();
    WriteOthers();
    WriteTables();
    text_ +=
        "\n[gate]\n# headroom = \"10%\"   # of a stack that is to stay free, or bytes\n"
        "growth = 64            # bytes that a stack may grow against the baseline\n";
    WriteMissing();
    return std::move(text_);
  }

 private:
  void WriteHead() {
    text_ = "schema = 1\ninput = " + TomlText(input_.input) + "\n";
    if (!input_.elf.empty()) {
      text_ += "elf = " + TomlText(input_.elf) + "\n";
    } else if (!input_.isProject) {
      text_ += "# elf = \"build/fw.elf\"   # the linked program tells handlers, sizes and tasks\n";
    }
    text_ +=
        "# load = [\"limits.txt\"]  # specification files with what the compiler cannot know\n";
  }

  // A line that states the figure, or one that says that it is to be stated.
  void WriteFigure(std::string_view key, bool isKnown, std::string_view what) {
    if (!isKnown) {
      text_ += fmt::format("# {} = 0   # to be stated: the bytes that {}\n", key, what);
    }
  }

  void WriteFigures() {
    if (!figures_.Target().empty()) {
      text_ += fmt::format("target = {}\nrtos = {}\n", TomlText(figures_.Target()),
                           TomlText(figures_.Rtos()));
    } else if (!input_.isProject) {
      text_ += "# target = \"cortex-m4f\"  # what the program is built for\n";
    }
    WriteFigure("frame", figures_.Frame(nullptr, true).has_value(),
                "the hardware pushes when an interrupt begins, 0 where none comes");
    WriteFigure("switch", !input_.isProject && figures_.Switch(nullptr, true).has_value(),
                "a change of the task pushes, 0 without tasks");
  }

  void WriteStack(std::string_view name, uint32_t entry, const std::string& size,
                  std::string_view comment) {
    const std::string key = IsBareKey(name) ? std::string(name) : TomlText(name);
    text_ += fmt::format("\n[stack.{}]{}\nentry = {}\n", key,
                         comment.empty() ? "" : fmt::format("   # {}", comment), NameOf(entry));
    text_ += size.empty() ? "size = \"?\"   # to be stated: bytes, or a symbol of the program\n"
                          : "size = " + TomlText(size) + "\n";
  }

  std::string NameOf(uint32_t function) const {
    return TomlText(result_.Statement(function).value_or(result_.SpecName(function)));
  }

  void WriteMain() {
    const std::optional<uint32_t> main = FindMain();
    if (!main) {
      text_ += "\n# [stack.main]\n# entry = \"main\"\n# size = 1024\n";
      return;
    }
    listed_.insert(*main);
    WriteStack("main", *main, SizeOfMain(), "");
    const std::optional<uint32_t> entry = input_.facts.entry;
    if (entry && *entry != *main && result_.explanations.ActivationSizeOf(*entry) != 0) {
      text_ +=
          fmt::format("reserve = {}   # {}, which calls it\n",
                      result_.explanations.ActivationSizeOf(*entry), result_.ShownSpecName(*entry));
    }
  }

  std::string SizeOfMain() const {
    const auto isThere = [this](std::string_view name) {
      return input_.facts.Find(name) != nullptr;
    };
    const auto size = std::ranges::find_if(kMainStacks, isThere);
    if (size != kMainStacks.end()) {
      return std::string(*size);
    }
    const auto place = std::ranges::find_if(
        kMainPlaces, [&](const auto& each) { return isThere(each.first) && isThere(each.second); });
    return place == kMainPlaces.end() ? "" : fmt::format("{} - {}", place->first, place->second);
  }

  std::optional<uint32_t> FindMain() const {
    for (uint32_t function = 0; function < result_.functions.size(); ++function) {
      if (result_.functions[function].Is(FN_DEFINED) && result_.SpecName(function) == "main") {
        return function;
      }
    }
    return std::nullopt;
  }

  void WriteTasks() {
    for (const ProgramFacts::Task& task : input_.facts.tasks) {
      if (listed_.insert(task.function).second) {
        WriteStack(result_.SpecName(task.function), task.function, task.stack,
                   "by " + task.creator);
      }
    }
  }

  void WriteInterrupts() {
    text_ +=
        "\n[interrupts]\n# stack = \"main\"   # the stack that carries them, where it is one\n";
    if (input_.facts.handlers.empty()) {
      text_ +=
          "# levels = []   # to be stated: one list for each priority, [[\"a\", \"b\"], [\"c\"]]; "
          "[]: "
          "none\n";
      WriteNamesOfHandlers();
      return;
    }
    text_ +=
        "# Handlers that cannot interrupt one another belong to one level: merge the lists. Those\n"
        "# that no level names count as one each, and check says so.\nlevels = [\n";
    for (const ProgramFacts::Handler& handler : input_.facts.handlers) {
      listed_.insert(handler.function);
      text_ += fmt::format(
          "#  [{}],{}\n", NameOf(handler.function),
          handler.names.size() == 1 ? "" : fmt::format("   # {} names", handler.names.size()));
    }
    text_ += "]\n# ignore = []    # handlers that never run\n";
  }

  // What is called like a handler is none of the tasks.
  void WriteNamesOfHandlers() {
    if (!input_.elf.empty()) {
      text_ +=
          "# No vector table was found in the program. Name its symbol before the first \"[\":\n"
          "#   vectors = \"...\"\n";
    }
    std::vector<std::string> names;
    for (const uint32_t root : result_.roots) {
      if (result_.functions[root].Is(FN_DEFINED) && !listed_.contains(root) &&
          IsCalledLikeAHandler(result_.SpecName(root))) {
        names.push_back(NameOf(root));
        listed_.insert(root);
      }
    }
    if (!names.empty()) {
      text_ += fmt::format("# By their names these may be handlers: {}\n", fmt::join(names, ", "));
    }
  }

  // Tasks, or what is called through pointers.
  void WriteOthers() {
    std::vector<std::string> names;
    for (const uint32_t root : result_.roots) {
      if (result_.functions[root].Is(FN_DEFINED) && !listed_.contains(root) &&
          input_.facts.entry != root && !IsNameOfHandler(input_.facts, result_.Name(root))) {
        names.push_back(result_.ShownSpecName(root));
      }
    }
    const size_t count = names.size();
    names.resize(std::min(count, kMostMissing));
    if (count != 0) {
      text_ += fmt::format(
          "\n# Nothing calls these. Is one a task, add its stack: {}{}\n", fmt::join(names, ", "),
          count > names.size() ? fmt::format(" and {} more", count - names.size()) : "");
    }
  }

  void WriteTables() {
    if (input_.facts.Find("_sw_isr_table") != nullptr) {
      text_ += "\n[calls]\n_isr_wrapper = { table = \"_sw_isr_table\" }\n";
    }
  }

  void WriteMissing() {
    BoundCauses causes(result_);
    causes.AddStack(0, {listed_.begin(), listed_.end()});
    const std::vector<BoundCause> missing = causes.Take();
    if (missing.empty()) {
      return;
    }
    text_ +=
        "\n# Without a bound, until it is stated. velkor-cli todo --output limits.txt writes the "
        "lines\n"
        "# to be filled in, and \"load\" reads them:\n";
    for (size_t i = 0; i < std::min(missing.size(), kMostMissing); ++i) {
      text_ += "#   " + TextOf(missing[i], result_) + "\n";
    }
    if (missing.size() > kMostMissing) {
      text_ += fmt::format("#   and {} more\n", missing.size() - kMostMissing);
    }
  }

  const InitInput& input_;
  const AnalysisResult& result_;
  const Configuration configuration_;  // nothing is stated yet
  const NameMeanings names_;
  const GateInput gate_;
  const StackFigures figures_;
  std::set<uint32_t> listed_;
  std::string text_;
};

}  // namespace

std::string InitText(const InitInput& input) {
  return InitWriter(input).Write();
}

std::string TomlText(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      quoted += '\\';
    }
    const auto value = static_cast<unsigned char>(c);
    quoted += value < 0x20 || value == 0x7F ? fmt::format("\\u{:04X}", value) : std::string(1, c);
  }
  return quoted + '"';
}

}  // namespace velkor::reports
