#include "reports/gate/input_findings.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <utility>

#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

struct RuleOfNotes {
  std::string_view rule;
  Severity severity;
};

// Those of other rules say nothing of what the gate is asked, unless something was not read.
constexpr std::array<RuleOfNotes, 6> kRulesOfNotes = {{
    {"module-not-whole", Severity::kError},
    {"duplicate-definition", Severity::kWarning},
    {"stale-input", Severity::kWarning},
    {"entry-not-found", Severity::kError},
    {"unused-statement", Severity::kWarning},
    {"stale-statement", Severity::kWarning},
}};

// Codes of the log from the first to the last one. Empty: of what is no matter of reading.
struct RuleOfCodes {
  std::string_view first;
  std::string_view last;
  std::string_view rule;
};

constexpr std::array<RuleOfCodes, 6> kRulesOfCodes = {{
    {"W9400", "W9400", "statement-not-read"},
    {"W9401", "W9407", "module-not-read"},
    {"W9410", "W9429", "statement-not-read"},
    {"W9430", "W9431", "module-missing"},
    {"W9432", "W9459", "module-not-read"},
    {"W9465", "W9466", ""},
}};

// What states the file that a note is about, where that is none of the sources.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> kKeysOfNotes = {{
    {"program-not-read", "elf"},
    {"program-mismatch", "elf"},
    {"folder-not-read", "input"},
}};

std::string WithoutFullStop(std::string text) {
  if (text.ends_with('.')) {
    text.pop_back();
  }
  return text;
}

// The text without folders and numbers of lines: the same in every build.
std::string CauseOf(std::string_view text) {
  std::string cause;
  size_t word = 0;
  constexpr std::string_view kLine = "line ";
  for (const char c : text) {
    const bool isDigit = c >= '0' && c <= '9';
    if (c == '/' || c == '\\') {
      cause.resize(word);
    } else if (!isDigit || !cause.ends_with(kLine)) {
      cause += c;
      word = c == ' ' || c == '(' || c == '"' ? cause.size() : word;
    }
  }
  return cause;
}

class InputSearch {
 public:
  InputSearch(const GateInput& input, FindingPlaces& places) : input_(input), places_(places) {}

  std::vector<Finding> Run() {
    for (const AnalysisNote& note : input_.result.notes) {
      TakeNote(note);
    }
    for (const AnalysisWarning& warning : input_.result.warnings) {
      TakeWarning(warning);
    }
    for (const std::string& module : input_.result.inputs.missing) {
      TakeModule("module-missing", module, "is missing");
    }
    for (const std::string& module : input_.result.inputs.notWhole) {
      TakeModule("module-not-whole", module, "was not read whole");
    }
    return std::move(findings_);
  }

 private:
  void TakeNote(const AnalysisNote& note) {
    const auto rule = std::ranges::find(kRulesOfNotes, note.rule, &RuleOfNotes::rule);
    if (rule == kRulesOfNotes.end() && !note.incomplete) {
      return;
    }
    const bool warns = !note.incomplete && rule->severity == Severity::kWarning;
    Add(note.rule, warns ? Severity::kWarning : Severity::kError, note.text,
        {note.file, note.line, note.column});
  }

  void TakeWarning(const AnalysisWarning& warning) {
    const auto rule = std::ranges::find_if(kRulesOfCodes, [&](const RuleOfCodes& each) {
      return each.first <= warning.code && warning.code <= each.last;
    });
    const std::string_view name = rule == kRulesOfCodes.end() ? "statement-not-read" : rule->rule;
    if (!name.empty()) {
      Add(name, Severity::kError, warning.code + " " + warning.text,
          {warning.file, warning.line, 0});
    }
  }

  // Where nothing of it has been said.
  void TakeModule(std::string_view rule, const std::string& module, std::string_view what) {
    if (!told_.contains(module)) {
      Add(rule, Severity::kError, "the module " + module + " " + std::string(what), {module, 0, 0});
    }
  }

  FindingPlace PlaceOf(std::string_view rule, const FindingPlace& place) {
    const Configuration& configuration = input_.configuration;
    const auto key =
        std::ranges::find_if(kKeysOfNotes, [&](const auto& each) { return each.first == rule; });
    if (key != kKeysOfNotes.end()) {
      return places_.InConfiguration(configuration.PlaceOf(key->second));
    }
    const TextPlace load = configuration.PlaceOf("load");
    const bool isOfLoad = rule == "statement-not-read" && load != TextPlace();
    return places_.Of(place.file, place.line, place.column,
                      isOfLoad ? load : configuration.PlaceOf("input"));
  }

  void Add(std::string_view rule, Severity severity, const std::string& text,
           const FindingPlace& place) {
    Finding finding;
    finding.rule = rule;
    finding.severity = severity;
    finding.text = WithoutFullStop(OneLine(text));
    finding.cause = CauseOf(finding.text);
    if (const size_t count = ++counts_[std::string(rule) + " " + finding.cause]; count > 1) {
      finding.cause += " " + std::to_string(count);
    }
    finding.place = PlaceOf(rule, place);
    if (severity == Severity::kError) {
      told_.insert(place.file);
    }
    findings_.push_back(std::move(finding));
  }

  const GateInput& input_;
  FindingPlaces& places_;
  std::vector<Finding> findings_;
  std::set<std::string> told_;            // files
  std::map<std::string, size_t> counts_;  // of findings by rule and cause
};

}  // namespace

std::vector<Finding> InputFindings(const GateInput& input, FindingPlaces& places) {
  return InputSearch(input, places).Run();
}

std::optional<Finding> NoInterruptsKnown(const GateInput& input, const StackFigures& figures,
                                         FindingPlaces& places) {
  const Configuration& configuration = input.configuration;
  const bool areStated = configuration.interrupts && configuration.interrupts->levels;
  const bool noneComes = configuration.frame == 0U;
  if (!input.isConfigured || areStated || noneComes || input.facts.hasVectors ||
      figures.Target() == "x86-64") {
    return std::nullopt;
  }
  Finding finding;
  finding.rule = "no-vectors";
  finding.severity = input.facts.hasProgram ? Severity::kError : Severity::kWarning;
  finding.cause = "no vector table";
  finding.text =
      input.facts.hasProgram
          ? "no vector table was found in the program, and \"levels\" of [interrupts] is "
            "not stated: no interrupt is counted"
          : "no program tells the interrupts, and \"levels\" of [interrupts] is not "
            "stated: no interrupt is counted";
  finding.help =
      input.facts.hasProgram
          ? "Name the symbol of the table with \"vectors\", or the handlers in \"levels\"; "
            "levels = [] where none comes."
          : "Name the program with \"elf\", or the handlers in \"levels\"; levels = [] where "
            "none comes.";
  const TextPlace elf = configuration.PlaceOf("elf");
  finding.place = places.InConfiguration(elf == TextPlace() ? TextPlace{1, 1} : elf);
  return finding;
}

std::vector<Finding> NameFindings(const StackNeeds& needs, const InterruptLevels& interrupts,
                                  FindingPlaces& places) {
  std::vector<Finding> findings;
  const auto add = [&](std::string_view rule, std::string cause, std::string text,
                       std::string stack, TextPlace place) {
    Finding finding;
    finding.rule = rule;
    finding.text = std::move(text);
    finding.cause = std::move(cause);
    finding.stack = std::move(stack);
    finding.place = places.InConfiguration(place);
    findings.push_back(std::move(finding));
  };
  for (const StackNeed& need : needs.stacks) {
    for (const InterruptLevels::Missing& missing : need.missing) {
      add("entry-not-found", missing.name.text,
          "the entry of stack " + OneLine(need.stack.name) + ": " + OneLine(missing.error),
          need.stack.name, missing.name.place);
    }
    if (!need.sizeError.empty()) {
      add("stack-size", "size",
          "the size of stack " + OneLine(need.stack.name) +
              " is not known: " + OneLine(need.sizeError),
          need.stack.name, need.sizePlace);
    }
  }
  for (const InterruptLevels::Missing& missing : interrupts.missing) {
    add("entry-not-found", missing.name.text, "an interrupt handler: " + OneLine(missing.error), "",
        missing.name.place);
  }
  return findings;
}

}  // namespace velkor::reports
