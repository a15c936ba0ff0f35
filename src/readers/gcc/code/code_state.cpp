#include "readers/gcc/code/code_state.h"

#include <algorithm>

namespace velkor {
namespace {

constexpr size_t kMostSlots = 64;

}  // namespace

CodeState::CodeState(uint8_t stackRegister, uint8_t registerCount, uint8_t wordSize)
    : stackRegister_(stackRegister), registerCount_(registerCount), wordSize_(wordSize) {
  for (uint8_t i = 0; i < registerCount; ++i) {
    registers_[i] = CodeValue::Number(i);
  }
  registers_[stackRegister] = CodeValue::Stack(0);
}

const CodeValue* CodeState::Slot(int64_t offset) const {
  const auto found = std::ranges::lower_bound(slots_, offset, {}, &Place::offset);
  return found != slots_.end() && found->offset == offset ? &found->value : nullptr;
}

void CodeState::StoreSlot(int64_t offset, int64_t width, const CodeValue& value) {
  const auto first = std::ranges::lower_bound(slots_, offset - wordSize_ + 1, {}, &Place::offset);
  const auto end = std::ranges::lower_bound(slots_, offset + width, {}, &Place::offset);
  const auto place = slots_.erase(first, end);
  const bool isKept = value.IsStack() || value.IsReturn() || value.IsConstant();
  if (isKept && slots_.size() < kMostSlots) {
    slots_.insert(place, {offset, value});
  }
}

void CodeState::ForgetNumbers() {
  std::erase_if(slots_, [](const Place& place) { return place.value.IsNumber(); });
  if (flags_.kind == Comparison::Kind::kSlot) {
    flags_ = {};
  }
}

void CodeState::LimitCompared(uint64_t bound, uint64_t id) {
  if (flags_.kind == Comparison::Kind::kSlot) {
    const auto place = std::ranges::lower_bound(slots_, flags_.offset, {}, &Place::offset);
    const bool isThere = place != slots_.end() && place->offset == flags_.offset;
    if (!isThere && slots_.size() < kMostSlots) {
      slots_.insert(place, {flags_.offset, CodeValue::Number(id, bound)});
    } else if (isThere && place->value.IsNumber()) {
      place->value.bound = std::min(place->value.bound, bound);
    }
  } else if (flags_.kind == Comparison::Kind::kNumber) {
    for (uint8_t i = 0; i < registerCount_; ++i) {
      if (registers_[i].IsNumber() && registers_[i].id == flags_.id) {
        registers_[i].bound = std::min(registers_[i].bound, bound);
      }
    }
  }
}

bool CodeState::JoinStack(const CodeValue& other) {
  CodeValue& mine = registers_[stackRegister_];
  const CodeValue before = mine;
  mine.amount = std::min(mine.amount, other.amount);
  mine.isBelow = mine.isBelow || other.isBelow;
  return mine != before;
}

bool CodeState::JoinSlots(const CodeState& other) {
  const size_t before = slots_.size();
  std::erase_if(slots_, [&](const Place& place) {
    const CodeValue* value = other.Slot(place.offset);
    return value == nullptr || *value != place.value;
  });
  return slots_.size() != before;
}

bool CodeState::Join(const CodeState& other, uint64_t place) {
  bool isChanged = JoinStack(other.Stack());
  for (uint8_t i = 0; i < registerCount_; ++i) {
    if (i == stackRegister_ || registers_[i] == other.registers_[i]) {
      continue;
    }
    const CodeValue joined =
        Joined(registers_[i], other.registers_[i], NumberName(place, i) | uint64_t{1} << 63);
    isChanged = isChanged || joined != registers_[i];
    registers_[i] = joined;
  }
  isChanged = JoinSlots(other) || isChanged;
  if (isOnOtherStack_ && !other.isOnOtherStack_) {
    isOnOtherStack_ = false;
    isChanged = true;
  }
  if (!(flags_ == other.flags_) && flags_.kind != Comparison::Kind::kNone) {
    flags_ = {};
    isChanged = true;
  }
  return isChanged;
}

}  // namespace velkor
