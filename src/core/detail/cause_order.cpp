#include "core/detail/cause_order.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <iterator>
#include <numeric>
#include <utility>

namespace velkor {

namespace {

// Numbers that are far apart for causes that are near.
uint64_t MarkOf(uint32_t cause) {
  uint64_t mark = (cause + uint64_t{1}) * 0x9E3779B97F4A7C15;
  mark = (mark ^ (mark >> 30)) * 0xBF58476D1CE4E5B9;
  return mark ^ (mark >> 27);
}

}  // namespace

CauseOrder::CauseOrder(const CauseGraph& graph, PlanningEffort effort)
    : graph_(graph),
      most_(effort),
      sets_(graph, effort.sets),
      rank_(graph.CauseCount()),
      isTaken_(graph.CauseCount(), false) {}

std::vector<uint32_t> CauseOrder::Find() {
  order_.reserve(graph_.CauseCount());
  SortByKept();
  FindChoices();
  TakeOneByOne();
  TakeAllAtOnce();
  TakeAll(byKept_);
  return std::move(order_);
}

// Entries for each cause; then the fewer causes, then the smaller ones.
bool CauseOrder::Choice::IsBetterThan(const Choice& other) const {
  const uint64_t mine = entries * other.left;
  const uint64_t others = other.entries * left;
  if (mine != others) {
    return mine > others;
  }
  return left != other.left ? left < other.left
                            : std::ranges::lexicographical_compare(causes, other.causes);
}

void CauseOrder::FindChoices() {
  for (uint32_t node = 0; node < graph_.NodeCount(); ++node) {
    if (graph_.Entries(node) == 0 || sets_.AreMany(node)) {
      continue;
    }
    Choice choice{sets_.Of(node), graph_.Entries(node), sets_.Of(node).size()};
    for (const uint32_t cause : choice.causes) {
      choice.mark ^= MarkOf(cause);
    }
    choices_.push_back(choice);
  }
}

// What is missed alike counts together.
void CauseOrder::JoinEqual() {
  std::ranges::stable_sort(choices_, {}, &Choice::mark);
  size_t kept = 0;
  for (const Choice& choice : choices_) {
    if (kept != 0 && choices_[kept - 1].mark == choice.mark) {
      choices_[kept - 1].entries += choice.entries;
    } else {
      choices_[kept++] = choice;
    }
  }
  choices_.resize(kept);
}

void CauseOrder::TakeOneByOne() {
  while (!choices_.empty() && effort_ < most_.oneByOne) {
    JoinEqual();
    TakeAll(std::ranges::min_element(choices_, &Choice::IsBetterThan)->causes);
    for (Choice& choice : choices_) {
      effort_ += choice.causes.size();
      choice.left = 0;
      choice.mark = 0;
      for (const uint32_t cause : choice.causes) {
        choice.left += isTaken_[cause] ? 0U : 1U;
        choice.mark ^= isTaken_[cause] ? 0 : MarkOf(cause);
      }
    }
    std::erase_if(choices_, [](const Choice& choice) { return choice.left == 0; });
  }
}

void CauseOrder::TakeAllAtOnce() {
  JoinEqual();
  std::ranges::sort(choices_, &Choice::IsBetterThan);
  for (const Choice& choice : choices_) {
    TakeAll(choice.causes);
  }
}

void CauseOrder::TakeAll(std::span<const uint32_t> causes) {
  std::vector<uint32_t> taken;
  std::ranges::copy_if(causes, std::back_inserter(taken),
                       [this](uint32_t cause) { return !isTaken_[cause]; });
  std::ranges::sort(taken, {}, [this](uint32_t cause) { return rank_[cause]; });
  for (const uint32_t cause : taken) {
    isTaken_[cause] = true;
    order_.push_back(cause);
  }
}

void CauseOrder::SortByKept() {
  std::vector<uint64_t> kept(graph_.CauseCount(), 0);
  constexpr uint32_t kAtOnce = 64;
  uint64_t effort = 0;
  for (uint32_t first = 0; first < kept.size() && effort < most_.kept; first += kAtOnce) {
    CountKept(first, kept);
    effort += graph_.NodeCount() + graph_.CallCount();
  }
  byKept_.resize(kept.size());
  std::iota(byKept_.begin(), byKept_.end(), 0U);
  std::ranges::stable_sort(byKept_, std::greater(), [&](uint32_t cause) { return kept[cause]; });
  for (uint32_t i = 0; i < byKept_.size(); ++i) {
    rank_[byKept_[i]] = i;
  }
}

// Of 64 causes, a bit each.
void CauseOrder::CountKept(uint32_t first, std::vector<uint64_t>& kept) {
  std::vector<uint64_t> missed(graph_.NodeCount(), 0);
  for (uint32_t node = 0; node < graph_.NodeCount(); ++node) {
    for (const uint32_t cause : graph_.Causes(node)) {
      missed[node] |= cause - first < 64 ? uint64_t{1} << (cause - first) : 0;
    }
    for (const uint32_t callee : graph_.Callees(node)) {
      missed[node] |= missed[callee];
    }
    for (uint64_t left = graph_.Entries(node) != 0 ? missed[node] : 0; left != 0;
         left &= left - 1) {
      kept[first + static_cast<uint32_t>(std::countr_zero(left))] += graph_.Entries(node);
    }
  }
}

}  // namespace velkor
