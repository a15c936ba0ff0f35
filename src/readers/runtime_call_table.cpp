#include "readers/runtime_call_table.h"

namespace velkor {

namespace {

constexpr std::string_view kCountedHelper = "cprep2";

}  // namespace

void StkRuntimeCallTable::AddHelper(std::string_view label, std::string_view helper) {
  Entry& entry = entries_[EntryNumber(label)];
  entry.calls.push_back({HelperNumber(helper), 0, false});
  if (helper == kCountedHelper) {
    ++entry.cprep2Count;
  }
}

void StkRuntimeCallTable::AddStub(std::string_view label, std::string_view stub) {
  const auto found = entryNumbers_.find(stub);
  if (found == entryNumbers_.end()) {
    return;
  }
  const uint32_t stubNumber = found->second;
  const uint32_t entryNumber = EntryNumber(label);
  const Entry& stubEntry = entries_[stubNumber];
  const auto stubCalls = static_cast<uint32_t>(stubEntry.calls.size());
  // A call of the stub is one call of each helper in its list, however often it is counted there.
  const bool counts = stubEntry.cprep2Count > 0;
  Entry& entry = entries_[entryNumber];
  entry.calls.push_back({stubNumber, stubCalls, true});
  if (counts) {
    ++entry.cprep2Count;
  }
}

bool StkRuntimeCallTable::CallsHelpers(std::string_view label) const {
  return Find(label) != nullptr;
}

uint32_t StkRuntimeCallTable::Cprep2Count(std::string_view label) const {
  const Entry* entry = Find(label);
  return entry == nullptr ? 0 : entry->cprep2Count;
}

const std::vector<uint32_t>& StkRuntimeCallTable::Helpers(std::string_view label) {
  listed_.clear();
  const auto found = entryNumbers_.find(label);
  if (found != entryNumbers_.end()) {
    List(found->second);
  }
  return listed_;
}

const StkRuntimeCallTable::Entry* StkRuntimeCallTable::Find(std::string_view label) const {
  const auto found = entryNumbers_.find(label);
  return found == entryNumbers_.end() ? nullptr : &entries_[found->second];
}

uint32_t StkRuntimeCallTable::EntryNumber(std::string_view label) {
  if (!entries_.empty() && lastLabel_ == label) {
    return lastEntry_;
  }
  const auto found = entryNumbers_.find(label);
  if (found != entryNumbers_.end()) {
    lastEntry_ = found->second;
  } else {
    lastEntry_ = static_cast<uint32_t>(entries_.size());
    entryNumbers_.emplace(label, lastEntry_);
    entries_.emplace_back();
  }
  lastLabel_ = label;
  return lastEntry_;
}

uint32_t StkRuntimeCallTable::HelperNumber(std::string_view helper) {
  const auto found = helperNumbers_.find(helper);
  if (found != helperNumbers_.end()) {
    return found->second;
  }
  const auto number = static_cast<uint32_t>(helperNames_.size());
  const auto added = helperNumbers_.emplace(helper, number).first;
  helperNames_.push_back(&added->first);
  return number;
}

// A stub's part of a list refers only to calls that were added before it, so the walk ends; what
// followed_ says of an entry stands in the list already and is not walked again.
void StkRuntimeCallTable::List(uint32_t entry) {
  isListed_.assign(helperNames_.size(), false);
  followed_.assign(entries_.size(), 0);
  std::vector<Position> path{{entry, static_cast<uint32_t>(entries_[entry].calls.size())}};
  while (!path.empty()) {
    const Position position = path.back();
    uint32_t& next = followed_[position.entry];
    if (next >= position.end) {
      path.pop_back();
      continue;
    }
    const Call& call = entries_[position.entry].calls[next++];
    if (call.isStub) {
      path.push_back({call.number, call.stubCalls});
    } else if (!isListed_[call.number]) {
      isListed_[call.number] = true;
      listed_.push_back(call.number);
    }
  }
}

}  // namespace velkor
