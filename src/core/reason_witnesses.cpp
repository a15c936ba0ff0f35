#include "core/reason_witnesses.h"

#include <algorithm>

#include "core/call_range.h"

namespace velkor {

ReasonWitnesses::ReasonWitnesses(const StkFunctionTable& table, const StkBounds& bounds)
    : table_(table), bounds_(bounds) {
  ReasonSet all;
  for (const StkFunction* function : table.Functions()) {
    all.Add(bounds.Reasons(*function));
  }
  for (const ReasonKind kind : kReasonKinds) {
    if (all.Has(kind)) {
      blamed_[static_cast<size_t>(kind)] = Find(kind);
    }
  }
}

std::vector<ReasonWitnesses::Reason> ReasonWitnesses::Of(const StkFunction& function) const {
  std::vector<Reason> reasons;
  for (const ReasonKind kind : kReasonKinds) {
    if (bounds_.Reasons(function).Has(kind)) {
      const uint32_t blamed = blamed_[static_cast<size_t>(kind)][function.index];
      reasons.push_back({kind, table_.Functions()[blamed]});
    }
  }
  return reasons;
}

ReasonWitnesses::Blamed ReasonWitnesses::Find(ReasonKind kind) const {
  Blamed blamed(table_.Count(), kNone);
  const std::span<const uint32_t> order = bounds_.CalleesFirst();
  for (size_t first = 0; first < order.size();) {
    const StkFunction& function = *table_.Functions()[order[first]];
    const uint32_t group = bounds_.GroupOf(function);
    const size_t count = group == StkBounds::kNoGroup ? 1 : bounds_.Groups()[group].members.size();
    const std::span<const uint32_t> members =
        count == 1 ? order.subspan(first, 1) : std::span(bounds_.Groups()[group].members);
    first += count;
    if (!bounds_.Reasons(function).Has(kind)) {
      continue;
    }
    const uint32_t shared = BlamedFor(blamed, members, kind);
    for (const uint32_t member : members) {
      const bool own = bounds_.OwnReasons(*table_.Functions()[member]).Has(kind);
      blamed[member] = own ? member : shared;
    }
  }
  return blamed;
}

uint32_t ReasonWitnesses::BlamedFor(const Blamed& blamed, std::span<const uint32_t> members,
                                    ReasonKind kind) const {
  const auto own = std::ranges::find_if(members, [&](uint32_t member) {
    return bounds_.OwnReasons(*table_.Functions()[member]).Has(kind);
  });
  if (own != members.end()) {
    return *own;
  }
  for (const uint32_t member : members) {
    for (const StkFunction* callee : AllCallees(*table_.Functions()[member])) {
      if (blamed[table_.IndexOf(*callee)] != kNone) {
        return blamed[table_.IndexOf(*callee)];
      }
    }
  }
  return kNone;
}

}  // namespace velkor
