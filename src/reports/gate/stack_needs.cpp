#include "reports/gate/stack_needs.h"

#include <algorithm>
#include <optional>

#include "core/bound_arithmetic.h"
#include "reports/gate/floating_point.h"
#include "reports/gate/stack_size.h"

namespace velkor::reports {
namespace {

class NeedSearch {
 public:
  NeedSearch(const GateInput& input, const InterruptLevels& interrupts, const StackFigures& figures)
      : input_(input), interrupts_(interrupts), figures_(figures) {
    if (figures.AskForFloatingPoint()) {
      floatingPoint_.emplace(input.result);
    }
  }

  StackNeeds Run() {
    for (const Configuration::Stack& stack : input_.configuration.stacks) {
      AddStack(stack);
    }
    for (const StackLimit& limit : input_.limits) {
      AddLimit(limit);
    }
    return std::move(needs_);
  }

 private:
  void AddStack(const Configuration::Stack& stated) {
    StackNeed need;
    need.stack.name = stated.name;
    need.stack.place = stated.place;
    TakeEntries(stated.entries, need);
    TakeSize(stated, need);
    const std::string& carrier = CarrierName();
    const bool carries = carrier.empty() || carrier == stated.name;
    if (carries) {
      need.dependsOn.insert(need.dependsOn.end(), interrupts_.handlers.begin(),
                            interrupts_.handlers.end());
    }
    const bool usesFloatingPoint = UsesFloatingPoint(need.dependsOn);
    AddEntryRows(need);
    if (carries) {
      AddInterrupts(stated, usesFloatingPoint, need);
    }
    if (!carries || (carrier.empty() && interrupts_.levels.empty() && !SaysNone())) {
      AddFigure("frame", figures_.Frame(&stated, usesFloatingPoint), need,
                [&] { return figures_.NoFrame(&stated); });
    }
    if (carrier != stated.name) {
      AddFigure("switch", figures_.Switch(&stated, usesFloatingPoint), need,
                [&] { return figures_.NoSwitch(&stated); });
    }
    if (stated.reserve != 0) {
      AddRow({.what = "reserve", .bytes = stated.reserve}, need);
    }
    Finish(std::move(need));
  }

  void AddLimit(const StackLimit& limit) {
    StackNeed need;
    need.stack.name = limit.entry;
    need.stack.size = limit.bytes;
    TakeEntries({{limit.entry, {}}}, need);
    const bool usesFloatingPoint = UsesFloatingPoint(need.dependsOn);
    AddEntryRows(need);
    if (input_.isConfigured) {
      AddFigure("frame", figures_.Frame(nullptr, usesFloatingPoint), need,
                [&] { return figures_.NoFrame(nullptr); });
      AddFigure("switch", figures_.Switch(nullptr, usesFloatingPoint), need,
                [&] { return figures_.NoSwitch(nullptr); });
    }
    Finish(std::move(need));
  }

  // Empty: every stack carries the interrupts.
  const std::string& CarrierName() const {
    static const std::string kNone;
    const auto& interrupts = input_.configuration.interrupts;
    return interrupts ? interrupts->stack : kNone;
  }

  // It is stated that no interrupt is to be counted.
  bool SaysNone() const {
    const auto& interrupts = input_.configuration.interrupts;
    return interrupts && (interrupts->levels || interrupts->nesting);
  }

  void TakeEntries(const std::vector<Configuration::Name>& entries, StackNeed& need) {
    for (const Configuration::Name& name : entries) {
      need.stack.entries.push_back(name.text);
      const FoundFunction found = FindEntry(input_, name.text);
      if (found.function) {
        need.stack.found.push_back(*found.function);
      } else {
        need.missing.push_back({name, found.error});
      }
    }
    need.dependsOn = need.stack.found;
    if (!need.stack.found.empty()) {
      need.stack.deepest = DeepestOf(input_.result, need.stack.found);
    }
  }

  void TakeSize(const Configuration::Stack& stated, StackNeed& need) {
    const TextPlace place = input_.configuration.PlaceOf("stack." + stated.name + ".size");
    need.sizePlace = place == TextPlace() ? stated.place : place;
    if (!stated.size || *stated.size == Configuration::Size("?")) {
      needs_.faults.push_back(
          {need.sizePlace, "the size of [stack." + stated.name + "] is to be stated"});
      return;
    }
    const StackSize size = SizeOf(*stated.size, input_.facts);
    if (const uint64_t* bytes = std::get_if<uint64_t>(&size)) {
      need.stack.size = *bytes;
    } else {
      need.sizeError = std::get<std::string>(size);
    }
  }

  bool UsesFloatingPoint(const std::vector<uint32_t>& functions) {
    return !floatingPoint_ || floatingPoint_->MayBeUsed(functions);
  }

  // The path of the entry that counts, function by function.
  void AddEntryRows(StackNeed& need) {
    if (!need.stack.deepest) {
      return;
    }
    for (const ExplanationRow& row : input_.result.explanations.Of(*need.stack.deepest)) {
      std::string what(input_.result.SpecName(row.function));
      if (row.times > 1) {
        what += " (" + std::to_string(row.times) + " times)";
      }
      AddRow({.part = StackRow::Part::kPath,
              .what = std::move(what),
              .bytes = row.bytes,
              .function = row.function},
             need);
    }
  }

  void AddInterrupts(const Configuration::Stack& stated, bool usesFloatingPoint, StackNeed& need) {
    if (interrupts_.levels.empty()) {
      return;
    }
    for (const InterruptLevel& level : interrupts_.levels) {
      const std::string name(input_.result.SpecName(level.deepest));
      AddRow({.part = StackRow::Part::kInterrupt,
              .what = "interrupt " + name,
              .bytes = input_.result.functions[level.deepest].known,
              .function = level.deepest},
             need);
      AddFigure("pushed by the hardware before " + name, figures_.Frame(&stated, usesFloatingPoint),
                need, [&] { return figures_.NoFrame(&stated); });
    }
  }

  template <typename Fault>
  void AddFigure(std::string what, std::optional<uint64_t> bytes, StackNeed& need, Fault fault) {
    if (bytes) {
      if (*bytes != 0) {
        AddRow({.what = std::move(what), .bytes = *bytes}, need);
      }
      return;
    }
    const GateFault lacking = fault();
    const auto isSame = [&](const GateFault& each) { return each.text == lacking.text; };
    if (std::ranges::none_of(needs_.faults, isSame)) {
      needs_.faults.push_back(lacking);
    }
  }

  static void AddRow(StackRow row, StackNeed& need) {
    row.bytes = std::min(row.bytes, kMaxBound - need.stack.known);
    need.stack.known += row.bytes;
    need.stack.rows.push_back(std::move(row));
  }

  void Finish(StackNeed need) {
    need.stack.bounded = !need.stack.found.empty() && need.missing.empty();
    for (const uint32_t function : need.dependsOn) {
      const BoundState state = input_.result.functions[function].state;
      need.stack.bounded = need.stack.bounded && state != BoundState::kUnbounded;
      need.isOver = need.isOver || state == BoundState::kOver;
    }
    needs_.stacks.push_back(std::move(need));
  }

  const GateInput& input_;
  const InterruptLevels& interrupts_;
  const StackFigures& figures_;
  std::optional<FloatingPoint> floatingPoint_;
  StackNeeds needs_;
};

}  // namespace

StackNeeds NeedsOf(const GateInput& input, const InterruptLevels& interrupts,
                   const StackFigures& figures) {
  return NeedSearch(input, interrupts, figures).Run();
}

}  // namespace velkor::reports
