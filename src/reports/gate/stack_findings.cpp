#include "reports/gate/stack_findings.h"

#include <algorithm>
#include <fmt/format.h>

#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

constexpr size_t kMostShownRows = 12;
constexpr size_t kMostFlow = 1000;
constexpr std::ptrdiff_t kNamedAtStart = 2;
constexpr std::ptrdiff_t kNamedAtEnd = 3;

class Judgement {
 public:
  Judgement(const GateInput& input, StackNeed& need, const std::optional<StackChange>& change,
            FindingPlaces& places)
      : input_(input), need_(need), stack_(need.stack), change_(change), places_(places) {}

  std::optional<Finding> Worst(bool isOtherCompiler) {
    if (const std::string text = OverBudget(); !text.empty()) {
      return Make("over-budget", StackState::kOverBudget, text, Severity::kError);
    }
    if (const std::string text = Headroom(); !text.empty()) {
      return Make("headroom", StackState::kHeadroom, text, Severity::kError);
    }
    if (const std::string text = Regression(); !text.empty()) {
      return Make("regression", StackState::kRegression, text,
                  isOtherCompiler ? Severity::kWarning : Severity::kError);
    }
    return std::nullopt;
  }

 private:
  std::string Needs() const {
    return fmt::format("stack {} needs {}{}", OneLine(stack_.name),
                       stack_.bounded ? "" : "at least ", stack_.known);
  }

  std::string OverBudget() {
    const int64_t free = stack_.Free().value_or(0);
    if (stack_.size && free < 0) {
      weight_ = static_cast<uint64_t>(-free);
      return fmt::format("{} of {} bytes: {} too many", Needs(), *stack_.size, weight_);
    }
    if (need_.isOver) {
      weight_ = stack_.known;
      return fmt::format("{} bytes, and a bound of it is over the limit of {} bytes", Needs(),
                         input_.result.sizeLimit);
    }
    return {};
  }

  std::string Headroom() {
    const auto& headroom = input_.configuration.gate.headroom;
    if (!headroom || !stack_.size || stack_.place == TextPlace()) {
      return {};
    }
    // A part of a byte is to stay free as a whole one.
    const uint64_t wanted =
        headroom->isPercent ? (*stack_.size * headroom->amount + 99) / 100 : headroom->amount;
    const auto free = static_cast<uint64_t>(*stack_.Free());
    if (free >= wanted) {
      return {};
    }
    weight_ = wanted - free;
    return fmt::format("{} of {} bytes: {} left of the {} that are to stay free", Needs(),
                       *stack_.size, free, wanted);
  }

  std::string Regression() {
    if (!change_) {
      return {};
    }
    weight_ = change_->change > 0 ? static_cast<uint64_t>(change_->change) : 0;
    if (change_->lostBound) {
      return fmt::format("stack {} had a bound of {} bytes, and has none any more",
                         OneLine(stack_.name),
                         static_cast<int64_t>(stack_.known) - change_->change);
    }
    return change_->hasGrown
               ? fmt::format("{} bytes, {} more than before", Needs(), weight_) + Blame()
               : std::string();
  }

  // ": parse 24 -> 236, by task_rx > rx_poll > parse"
  std::string Blame() const {
    if (!change_->blamed) {
      return {};
    }
    const StackChange::Blamed& blamed = *change_->blamed;
    const std::string name = input_.result.ShownSpecName(blamed.function);
    const std::string text = blamed.before
                                 ? fmt::format(": {} {} -> {}", name, *blamed.before, blamed.after)
                                 : fmt::format(": {} {} is called anew", name, blamed.after);
    std::vector<std::string> path;
    for (const StackRow& row : stack_.rows) {
      if (row.part == StackRow::Part::kPath) {
        path.push_back(input_.result.ShownSpecName(row.function));
        if (row.function == blamed.function) {
          break;
        }
      }
    }
    if (std::ssize(path) > kNamedAtStart + kNamedAtEnd) {
      path.erase(path.begin() + kNamedAtStart, path.end() - kNamedAtEnd);
      path.insert(path.begin() + kNamedAtStart, "...");
    }
    return fmt::format("{}, by {}", text, fmt::join(path, " > "));
  }

  Finding Make(std::string_view rule, StackState state, std::string text, Severity severity) {
    stack_.state = state;
    Finding finding;
    finding.rule = rule;
    finding.severity = severity;
    finding.text = std::move(text);
    finding.place = Place();
    finding.stack = stack_.name;
    finding.weight = weight_;
    finding.rows = RowsLine(stack_);
    for (const StackRow& row : stack_.rows) {
      if (row.part == StackRow::Part::kPath && finding.steps.size() < kMostFlow) {
        finding.steps.push_back({fmt::format("{}: {} bytes", OneLine(row.what), row.bytes),
                                 places_.OfFunction(row.function, stack_.place)});
      }
    }
    return finding;
  }

  // Where the bytes came from.
  FindingPlace Place() {
    if (change_ && change_->blamed && (change_->hasGrown || change_->change > 0)) {
      const StackChange::Blamed& blamed = *change_->blamed;
      return places_.OfFunction(blamed.before ? blamed.function : blamed.caller, stack_.place);
    }
    const StackRow* largest = nullptr;
    for (const StackRow& row : stack_.rows) {
      if (row.part == StackRow::Part::kPath && (largest == nullptr || row.bytes > largest->bytes)) {
        largest = &row;
      }
    }
    return largest != nullptr ? places_.OfFunction(largest->function, stack_.place)
                              : places_.InConfiguration(stack_.place);
  }

  const GateInput& input_;
  StackNeed& need_;
  GateStack& stack_;
  const std::optional<StackChange>& change_;
  FindingPlaces& places_;
  uint64_t weight_ = 0;
};

// Of all rows those with the most bytes, in their order.
std::vector<bool> ShownRows(const std::vector<StackRow>& rows) {
  std::vector<size_t> order(rows.size());
  for (size_t i = 0; i < order.size(); ++i) {
    order[i] = i;
  }
  std::ranges::stable_sort(order, [&](size_t left, size_t right) {
    const bool isFigure = rows[left].part != StackRow::Part::kPath;
    const bool isOtherFigure = rows[right].part != StackRow::Part::kPath;
    return isFigure != isOtherFigure ? isFigure : rows[left].bytes > rows[right].bytes;
  });
  std::vector<bool> shown(rows.size(), rows.size() <= kMostShownRows);
  for (size_t i = 0; i < std::min(order.size(), kMostShownRows); ++i) {
    shown[order[i]] = true;
  }
  return shown;
}

}  // namespace

std::optional<Finding> JudgeStack(const GateInput& input, StackNeed& need,
                                  const std::optional<StackChange>& change, bool isOtherCompiler,
                                  FindingPlaces& places) {
  std::optional<Finding> finding = Judgement(input, need, change, places).Worst(isOtherCompiler);
  if (!finding && !need.stack.bounded) {
    need.stack.state = StackState::kNoBound;
  }
  return finding;
}

std::string RowsLine(const GateStack& stack) {
  const std::vector<bool> shown = ShownRows(stack.rows);
  std::string line;
  const auto add = [&](const std::string& what, uint64_t bytes) {
    line += fmt::format("{}{} {}", line.empty() ? "" : " + ", what, bytes);
  };
  size_t others = 0;
  uint64_t bytes = 0;
  for (size_t i = 0; i <= stack.rows.size(); ++i) {
    const bool isShown = i == stack.rows.size() || shown[i];
    if (isShown && others != 0) {
      add(fmt::format("({} more)", others), bytes);
      others = 0;
      bytes = 0;
    }
    if (i == stack.rows.size()) {
      break;
    }
    if (isShown) {
      add(OneLine(stack.rows[i].what), stack.rows[i].bytes);
    } else {
      ++others;
      bytes += stack.rows[i].bytes;
    }
  }
  return fmt::format("{} = {}{}", line, stack.bounded ? "" : "at least ", stack.known);
}

}  // namespace velkor::reports
