#include "readers/tarn/runtime_call_table.h"

namespace velkor {

namespace {

constexpr std::string_view kCountedHelper = "cprep2";

}  // namespace

void StkRuntimeCallTable::AddHelper(std::string_view label, std::string_view helper) {
  Entry& entry = entries_[EntryNumber(label)];
  entry.calls.push_back({helpers_.Insert(helper), 0, false});
  if (helper == kCountedHelper) {
    ++entry.cprep2Count;
  }
}

void StkRuntimeCallTable::AddStub(std::string_view label, std::string_view stub) {
  const std::optional<uint32_t> found = labels_.Find(stub);
  if (!found) {
    return;
  }
  const uint32_t stubNumber = *found;
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
  if (const std::optional<uint32_t> entry = labels_.Find(label)) {
    List(*entry);
  }
  return listed_;
}

const StkRuntimeCallTable::Entry* StkRuntimeCallTable::Find(std::string_view label) const {
  const std::optional<uint32_t> entry = labels_.Find(label);
  return entry ? &entries_[*entry] : nullptr;
}

uint32_t StkRuntimeCallTable::EntryNumber(std::string_view label) {
  if (!entries_.empty() && lastLabel_ == label) {
    return lastEntry_;
  }
  lastEntry_ = labels_.Insert(label);
  entries_.resize(labels_.size());
  lastLabel_ = label;
  return lastEntry_;
}

// A stub's part of a list refers only to calls that were added before it, so the walk ends; what
// followed_ says of an entry stands in the list already and is not walked again.
void StkRuntimeCallTable::List(uint32_t entry) {
  ++round_;
  listedIn_.resize(helpers_.size(), 0);
  followed_.resize(entries_.size());
  std::vector<Position> path{{entry, static_cast<uint32_t>(entries_[entry].calls.size())}};
  while (!path.empty()) {
    const Position position = path.back();
    Followed& followed = followed_[position.entry];
    if (followed.round != round_) {
      followed = {round_, 0};
    }
    if (followed.calls >= position.end) {
      path.pop_back();
      continue;
    }
    const Call& call = entries_[position.entry].calls[followed.calls++];
    if (call.isStub) {
      path.push_back({call.number, call.stubCalls});
    } else if (listedIn_[call.number] != round_) {
      listedIn_[call.number] = round_;
      listed_.push_back(call.number);
    }
  }
}

}  // namespace velkor
