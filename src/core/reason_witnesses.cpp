#include "core/reason_witnesses.h"

#include <span>
#include <utility>

#include "core/call_range.h"

namespace velkor {

namespace {

constexpr uint32_t kNone = 0xFFFFFFFF;

// Whom to blame for one kind: by function; kNone where the kind does not reach.
class BlameSearch {
 public:
  BlameSearch(const StkFunctionTable& table, const StkBounds& bounds, ReasonKind kind)
      : table_(table), bounds_(bounds), kind_(kind), blamed_(table.Count(), kNone) {}

  std::vector<uint32_t> Run() {
    const std::span<const uint32_t> order = bounds_.CalleesFirst();
    for (size_t first = 0; first < order.size();) {
      const StkFunction& function = *table_.Functions()[order[first]];
      const uint32_t group = bounds_.GroupOf(function);
      const bool alone = group == StkBounds::kNoGroup;
      const std::span<const uint32_t> members =
          alone ? order.subspan(first, 1) : std::span(bounds_.Groups()[group].members);
      first += members.size();
      if (bounds_.Reasons(function).Has(kind_)) {
        Blame(members);
      }
    }
    return std::move(blamed_);
  }

 private:
  bool HasItself(uint32_t function) const {
    return bounds_.OwnReasons(*table_.Functions()[function]).Has(kind_);
  }

  void Blame(std::span<const uint32_t> members) {
    const uint32_t shared = BlamedForAll(members);
    for (const uint32_t member : members) {
      blamed_[member] = HasItself(member) ? member : shared;
    }
  }

  uint32_t BlamedForAll(std::span<const uint32_t> members) const {
    for (const uint32_t member : members) {
      if (HasItself(member)) {
        return member;
      }
    }
    for (const uint32_t member : members) {
      for (const StkFunction* callee : BoundCallees(*table_.Functions()[member])) {
        const uint32_t blamed = blamed_[table_.IndexOf(*callee)];
        if (blamed != kNone) {
          return blamed;
        }
      }
    }
    return kNone;
  }

  const StkFunctionTable& table_;
  const StkBounds& bounds_;
  const ReasonKind kind_;
  std::vector<uint32_t> blamed_;
};

}  // namespace

ReasonWitnesses::ReasonWitnesses(const StkFunctionTable& table, const StkBounds& bounds) {
  ReasonSet all;
  for (const StkFunction* function : table.Functions()) {
    all.Add(bounds.Reasons(*function));
  }
  for (const ReasonKind kind : kReasonKinds) {
    if (all.Has(kind)) {
      blamed_[static_cast<size_t>(kind)] = BlameSearch(table, bounds, kind).Run();
    }
  }
}

std::vector<ReasonWitness> ReasonWitnesses::Of(uint32_t function) const {
  std::vector<ReasonWitness> reasons;
  for (const ReasonKind kind : kReasonKinds) {
    const std::vector<uint32_t>& blamed = blamed_[static_cast<size_t>(kind)];
    if (!blamed.empty() && blamed[function] != kNone) {
      reasons.push_back({kind, blamed[function]});
    }
  }
  return reasons;
}

}  // namespace velkor
