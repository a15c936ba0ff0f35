#include "reports/todo_output.h"

#include <algorithm>
#include <fmt/format.h>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/adjustment.h"
#include "core/function_text.h"
#include "files/spec_names.h"
#include "platform/limits.h"

namespace velkor::reports {
namespace {

constexpr std::string_view kHowTo =
    "# Each step says how many of them it frees once it is stated with all steps above it.\n"
    "# Fill in the values of a line and take its \"#\" away:\n"
    "#   ADD=      bytes: all that an unknown function takes, the most that a frame grows by\n"
    "#   CALL=     a function that the pointer can hold; several: CALL=one, CALL=two\n"
    "#             (or ADD= in its place, with the bytes of the largest)\n"
    "#   RECTIME=  how often the function can be active at once, its first call counted; where a\n"
    "#             step has several such lines, state it at one and 1 at the others\n"
    "# \"analyze INPUT --load FILE\" tries the file, \"load INPUT FILE\" keeps what it states.\n";

class TodoOutput {
 public:
  TodoOutput(const StkFunctionTable& functions, const StkBounds& bounds, ResultOutput& output)
      : functions_(functions), bounds_(bounds), names_(functions), output_(output) {}

  void Write(const StatementPlan& plan) {
    const auto isTopLevel = [](const StkFunction* function) { return function->Is(FN_ROOT); };
    const auto all = std::ranges::count_if(functions_.Functions(), isTopLevel);
    if (plan.steps.empty()) {
      Line(all == 0 ? "# There are no functions."
                    : "# Nothing is to be stated: no top-level function misses anything.");
      return;
    }
    Line(
        fmt::format("# {} of {} top-level functions have no bound: what to state so that they "
                    "get one.",
                    plan.unbounded, all));
    output_.Write(kHowTo);
    lines_ += static_cast<size_t>(std::ranges::count(kHowTo, '\n'));
    for (size_t i = 0; i < plan.steps.size(); ++i) {
      if (lines_ + MostLines(plan.steps[i]) + 1 > kMaxTextLines) {
        Line(fmt::format("# {} more steps: ask again once those above are stated.",
                         plan.steps.size() - i));
        return;
      }
      WriteStep(plan.steps, i);
    }
  }

 private:
  static constexpr size_t kMostNamed = 8;
  static constexpr size_t kLongestName = 80;

  struct Remark {
    ReasonKind kind;
    std::string (TodoOutput::*text)(const StkFunction&);
  };

  static size_t MostLines(const PlannedStep& step) {
    return 2 + (kReasonKinds.size() + 1) * step.statements.size();
  }

  void Line(std::string_view text) {
    output_.Write(text);
    output_.Write("\n");
    ++lines_;
  }

  void WriteStep(const std::vector<PlannedStep>& steps, size_t i) {
    const PlannedStep& step = steps[i];
    Line("");
    std::string heading = fmt::format("# {}: {}", i + 1, FreesText(steps, i));
    const WantedStatement& first = step.statements.front();
    if (first.settles.Has(ReasonKind::kRecursion)) {
      heading += "; " + RecursionText(*functions_.Functions()[first.function], step);
    }
    Line(heading);
    for (const WantedStatement& statement : step.statements) {
      WriteStatement(statement);
    }
  }

  std::string FreesText(const std::vector<PlannedStep>& steps, size_t i) {
    nextFreeing_ = std::max(nextFreeing_, i);
    while (nextFreeing_ < steps.size() && steps[nextFreeing_].frees == 0) {
      ++nextFreeing_;
    }
    if (nextFreeing_ == steps.size()) {
      return "frees none";
    }
    const uint32_t frees = steps[nextFreeing_].frees;
    return nextFreeing_ == i ? fmt::format("frees {}", frees)
                             : fmt::format("{} more {} a bound once steps {} {} {} are stated",
                                           frees, frees == 1 ? "has" : "have", i + 1,
                                           nextFreeing_ == i + 1 ? "and" : "to", nextFreeing_ + 1);
  }

  std::string RecursionText(const StkFunction& member, const PlannedStep& step) {
    const std::vector<uint32_t>& members = bounds_.Groups()[bounds_.GroupOf(member)].members;
    if (members.size() == 1) {
      return "a recursion of one function";
    }
    StkFunctionList list;
    for (size_t i = 0; i < members.size() && i < kMostNamed; ++i) {
      list.push_back(functions_.Functions()[members[i]]);
    }
    return fmt::format("a recursion of {} functions, limited by {}: {}", members.size(),
                       step.statements.size(), NameList(list, members.size()));
  }

  void WriteStatement(const WantedStatement& wanted) {
    const StkFunction& function = *functions_.Functions()[wanted.function];
    constexpr Remark kRemarks[] = {{ReasonKind::kUnknown, &TodoOutput::UnknownText},
                                   {ReasonKind::kIndirect, &TodoOutput::PointerText},
                                   {ReasonKind::kHiddenCall, &TodoOutput::HiddenCallText},
                                   {ReasonKind::kDynamic, &TodoOutput::DynamicText}};
    for (const Remark& remark : kRemarks) {
      if (wanted.settles.Has(remark.kind)) {
        Line("# " + Name(function) + " " + (this->*remark.text)(function));
      }
    }
    const std::optional<std::string> name = names_.Statement(function);
    if (name) {
      Line("#" + *name + Attributes(function, wanted.settles));
    } else {
      Line("# " + Name(function) + " cannot be named in a specification file");
    }
  }

  // What is in force stays, and the values to be filled in.
  static std::string Attributes(const StkFunction& function, ReasonSet settles) {
    std::string text;
    const std::string margin = MarginText(function);
    if (settles.Has(ReasonKind::kUnknown) || settles.Has(ReasonKind::kDynamic)) {
      text += ", ADD=";
    } else if (!margin.empty()) {
      text += ", ADD=" + margin;
    }
    const uint32_t depth = function.adjustment != nullptr ? function.adjustment->depth : kNoDepth;
    if (settles.Has(ReasonKind::kRecursion)) {
      text += ", RECTIME=";
    } else if (depth != kNoDepth) {
      text += ", RECTIME=" + std::to_string(depth);
    }
    const bool calls = settles.Has(ReasonKind::kIndirect) || settles.Has(ReasonKind::kHiddenCall);
    return text + (calls ? ", CALL=" : "");
  }

  std::string UnknownText(const StkFunction& function) {
    const std::string why = function.Is(FN_DEFINED) ? "is defined, but nothing tells its size"
                                                    : "is not defined in the project";
    StkFunctionList callers;
    for (const auto numbers :
         {functions_.Callers(function.index), functions_.ExtraCallers(function.index)}) {
      for (const uint32_t number : numbers) {
        callers.push_back(functions_.Functions()[number]);
      }
    }
    return why + Place(function.Place()) +
           (callers.empty() ? "" : "; called by " + NameList(callers, callers.size()));
  }

  std::string PointerText(const StkFunction& function) {
    std::string text = "calls through a pointer";
    const std::vector<std::string_view> pointers = functions_.PointerNames(function);
    for (size_t i = 0; i < pointers.size(); ++i) {
      std::string_view pointer = pointers[i];
      pointer.remove_prefix(pointer.starts_with('_') ? 1 : 0);
      text += (i == 0 ? " " : ", ") + Shown(pointer);
    }
    if (function.told == nullptr || function.told->indirectSites.empty()) {
      return text + Place(function.Place());
    }
    const std::vector<IndirectSite>& sites = function.told->indirectSites;
    for (size_t i = 0; i < std::min(kMostNamed, sites.size()); ++i) {
      text += (i == 0 ? " at " : ", ") + SiteText(sites[i]);
    }
    return text + (sites.size() > kMostNamed
                       ? fmt::format(" and {} more", sites.size() - kMostNamed)
                       : "");
  }

  std::string HiddenCallText(const StkFunction& function) {
    return "makes a call in its code that its record does not list" + Place(function.Place());
  }

  std::string DynamicText(const StkFunction& function) {
    return "has a frame that grows while it runs" + Place(function.Place());
  }

  std::string Place(const SourceLine& place) {
    return place.file == nullptr ? "" : " (" + PlaceText(place) + ")";
  }

  std::string SiteText(const IndirectSite& site) {
    return site.file == nullptr && site.address != 0 ? fmt::format("{:#x}", site.address)
                                                     : PlaceText(site);
  }

  std::string PlaceText(const SourceLine& place) {
    std::string text = place.file == nullptr ? "" : Shown(place.file->name);
    for (const uint32_t number : {place.line, place.column}) {
      if (number != 0) {
        text += ":" + std::to_string(number);
      }
    }
    return text;
  }

  std::string NameList(std::span<StkFunction* const> functions, size_t count) {
    std::string text;
    const size_t named = std::min(kMostNamed, functions.size());
    for (size_t i = 0; i < named; ++i) {
      text += (i == 0 ? "" : ", ") + Name(*functions[i]);
    }
    return text + (count > named ? fmt::format(" and {} more", count - named) : "");
  }

  std::string Name(const StkFunction& function) { return Shown(names_.Shown(function)); }

  // Within a comment: as much as a line bears, and nothing that would end it.
  std::string Shown(std::string_view text) const {
    const CodePage& codePage = functions_.GetCodePage();
    const size_t kept = codePage.CutLength(text, kLongestName);
    std::string shown(text.substr(0, kept));
    for (size_t i = 0; i < shown.size(); i += codePage.CharLength(shown, i)) {
      const auto character = static_cast<unsigned char>(shown[i]);
      shown[i] = character < ' ' || character == 0x7F ? '?' : shown[i];
    }
    return shown + (kept < text.size() ? "..." : "");
  }

  const StkFunctionTable& functions_;
  const StkBounds& bounds_;
  SpecNames names_;
  ResultOutput& output_;
  size_t lines_ = 0;
  size_t nextFreeing_ = 0;  // the first step from here on that frees any
};

}  // namespace

void WriteTodo(const StkFunctionTable& functions, const StkBounds& bounds,
               const StatementPlan& plan, ResultOutput& output) {
  TodoOutput(functions, bounds, output).Write(plan);
}

}  // namespace velkor::reports
