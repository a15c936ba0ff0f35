#include "core/clone_table.h"

#include <utility>

#include "core/function_sorting.h"

namespace velkor {

namespace {

template <typename Map>
const typename Map::mapped_type& FoundOrNone(const Map& map, uint32_t key) {
  static const typename Map::mapped_type kNone{};
  const auto found = map.find(key);
  return found == map.end() ? kNone : found->second;
}

}  // namespace

void CloneTable::Add(StkFunction& clone, StkFunction& base) {
  clone.flags |= FN_CLONE;
  baseOf_[clone.index] = &base;
  clonesOf_[base.index].push_back(&clone);
}

void CloneTable::AddOfGone(StkFunction& clone, uint32_t baseName) {
  clone.flags |= FN_CLONE;
  goneBaseOf_.emplace(clone.index, baseName);
  ofGone_[baseName].push_back(&clone);
}

StkFunction* CloneTable::BaseOf(const StkFunction& clone) const {
  return FoundOrNone(baseOf_, clone.index);
}

const StkFunctionList& CloneTable::Of(const StkFunction& base) const {
  return FoundOrNone(clonesOf_, base.index);
}

const StkFunctionList& CloneTable::OfGone(uint32_t baseName) const {
  return FoundOrNone(ofGone_, baseName);
}

std::optional<uint32_t> CloneTable::GoneBaseName(const StkFunction& clone) const {
  const auto found = goneBaseOf_.find(clone.index);
  return found == goneBaseOf_.end() ? std::nullopt : std::optional(found->second);
}

StkFunctionList CloneTable::Following(const StkFunction& base) const {
  StkFunctionList following = Of(base);
  std::erase_if(following, [this](const StkFunction* clone) { return Statement(*clone).isOwn; });
  return following;
}

const CloneStatement& CloneTable::Statement(const StkFunction& clone) const {
  return FoundOrNone(statements_, clone.index);
}

void CloneTable::SetStatement(const StkFunction& clone, CloneStatement statement) {
  statements_[clone.index] = std::move(statement);
}

void CloneTable::SetPending(const StkFunction& clone, CloneStatement statement) {
  pending_[clone.index] = std::move(statement);
}

void CloneTable::PutPendingInForce() {
  for (auto& [index, statement] : pending_) {
    statements_[index] = std::move(statement);
  }
  pending_.clear();
}

void CloneTable::Clear() {
  *this = CloneTable();
}

bool AreOfOneSource(const StkFunction& left, const StkFunction& right) {
  const SourceLine place = left.Place();
  const SourceLine other = right.Place();
  return left.file == right.file ||
         (place.file != nullptr && place.file == other.file && place.line == other.line);
}

StkAdjustment AdjustmentFor(const StkFunction& function, const StkAdjustment& stated,
                            const CodePage& codePage) {
  StkAdjustment adjustment;
  adjustment.margin = stated.margin;
  adjustment.depth = stated.depth;
  adjustment.line = stated.line;
  StkFunctionList extra;
  const auto add = [&](const StkFunctionList& callees) {
    for (StkFunction* callee : callees) {
      InsertByName(function.CallsDirectly(*callee) ? adjustment.directCallees : extra, *callee,
                   codePage);
    }
  };
  add(stated.directCallees);
  if (stated.callees) {
    add(*stated.callees);
  }
  adjustment.callees = std::move(extra);
  return adjustment;
}

}  // namespace velkor
