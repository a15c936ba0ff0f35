#include "reports/gate/gate_rules.h"

#include <algorithm>
#include <array>

namespace velkor::reports {
namespace {

constexpr std::array<GateRule, 17> kRules = {{
    {"duplicate-definition", "One name is defined twice",
     "Two definitions have one name, so that calls may mean either. Two programs in one folder "
     "look "
     "like that.",
     "Leave one of the programs out with \"exclude\" of velkor.toml, or rename one function.",
     Severity::kWarning},
    {"entry-not-found", "A function that is named is not in the program",
     "velkor.toml or the command line names a function that the program does not have, or a name "
     "that can mean several functions. What would be counted there is not counted.",
     "Name the function as velkor-cli analyze shows it, with its file where several have the name.",
     Severity::kError},
    {"headroom", "Too little of a stack stays free",
     "A stack fits, but less of it stays free than \"headroom\" of [gate] asks for.",
     "Make the stack larger, or what runs on it smaller: velkor-cli explain velkor.toml ENTRY "
     "shows what it takes.",
     Severity::kError},
    {"module-missing", "A module of the program is missing",
     "A file of the build that tells functions and calls is not there. What it would tell is not "
     "counted.",
     "Build everything from nothing, with the options that write these files.", Severity::kError},
    {"module-not-read", "A module of the program was not read",
     "A file of the build could not be read. What it would tell is not counted.",
     "Build it again; see the message for the file and the line.", Severity::kError},
    {"module-not-whole", "A module of the program is not whole",
     "A file of the build ends early, or an object has no call graph file. What is missing is not "
     "counted.",
     "Build it again with the options that write the file.", Severity::kError},
    {"no-bound", "A stack has no bound",
     "Something that runs on the stack has no known limit: a call through a pointer, a recursion, "
     "a frame that grows while the program runs, or a function whose size is not known. The bytes "
     "that are shown are only the least.",
     "State what is missing in a specification file that \"load\" of velkor.toml names.",
     Severity::kError},
    {"no-vectors", "No interrupt is known",
     "Neither a vector table of the program nor velkor.toml tells which interrupts may come: none "
     "is "
     "counted.",
     "Name the symbol of the table with \"vectors\", or the handlers in \"levels\"; levels = [] "
     "where none comes.",
     Severity::kError},
    {"now-known", "What a stack missed is known now",
     "A stack had no bound in the baseline, and what kept it from having one is known now.",
     "Nothing is to be done; --update-baseline takes the number over.", Severity::kNote},
    {"over-budget", "A stack is too small",
     "What runs on the stack can need more bytes than the stack has. A stack that overflows writes "
     "over other data.",
     "Make the stack larger, or what runs on it smaller: velkor-cli explain velkor.toml ENTRY "
     "shows what it takes.",
     Severity::kError},
    {"regression", "A stack needs more than before",
     "A stack needs more bytes than in the baseline by more than \"growth\" of [gate] allows, or "
     "it had a bound and has none any more.",
     "Look at the function that is named; --update-baseline accepts the new number.",
     Severity::kError},
    {"stack-size", "The size of a stack is not known",
     "The size of a stack is to be taken from the program, which has no such object or symbol, or "
     "one without a size.",
     "State the size in bytes, or name the object that is the stack.", Severity::kError},
    {"stale-input", "A source is newer than its module",
     "A source was changed after the file that tells its functions and calls was written.",
     "Build again before the stacks are checked.", Severity::kWarning},
    {"stale-statement", "A statement names no function",
     "A line of a file with statements names a function that the program does not have: it has no "
     "effect.",
     "Take the line away, or name the function as it is called now.", Severity::kWarning},
    {"statement-not-read", "A statement was not read",
     "A line of a specification file is wrong and has no effect, or the file was not read.",
     "Mend the line, or the name of the file, that the message names.", Severity::kError},
    {"unlisted-interrupt", "An interrupt handler is in no level",
     "The vector table names a handler that velkor.toml does not. It is counted as a level of its "
     "own.",
     "Name it in a level of [interrupts], or in \"ignore\" if it never runs.", Severity::kWarning},
    {"unlisted-task", "A task has no stack",
     "A function begins on a stack of its own, or may, and no stack of velkor.toml names it as an "
     "entry.",
     "Add a stack with this entry and its size.", Severity::kWarning},
}};

}  // namespace

std::span<const GateRule> GateRules() {
  return kRules;
}

const GateRule* FindGateRule(std::string_view name) {
  const auto found = std::ranges::lower_bound(kRules, name, {}, &GateRule::name);
  return found == kRules.end() || found->name != name ? nullptr : &*found;
}

std::string_view HelpOf(const Finding& finding) {
  if (!finding.help.empty()) {
    return finding.help;
  }
  const GateRule* rule = FindGateRule(finding.rule);
  return rule != nullptr ? rule->help : std::string_view("See what the message says.");
}

}  // namespace velkor::reports
