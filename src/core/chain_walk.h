#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "core/function.h"

namespace velkor {

enum class ChainMode {
  kMaximum,  // only callees with the largest total among all callees of their caller
  kAll,
};

// What a walk of call chains tells its caller, who renders it. Every answer false ends the walk at
// once.
class ChainVisitor {
 public:
  virtual ~ChainVisitor() = default;
  // A function is reached, the start function first.
  virtual bool Visit(const StkFunction& function) = 0;
  // The function visited last ends its chain: it calls nothing, or stands further up the chain.
  virtual bool EndOfChain() = 0;
  // Before the walk goes down into the callee of that index (from 0) among the next callees of
  // parent, which has allCallees callees and extra callees together.
  virtual bool Branch(const StkFunction& parent, size_t index, size_t nextCallees,
                      size_t allCallees) = 0;
  // After the walk has come back from all next callees of the function.
  virtual bool Leave(const StkFunction& function) = 0;
};

// The callees that a chain goes on with: callees first, then extra callees, in list order. A
// function that stands in both lists is followed twice. In maximum mode every callee whose total
// equals the largest, so chains branch at ties; which ones these are is worked out once for each
// function. The totals and lists must not change while it is used.
class NextCallees {
 public:
  explicit NextCallees(ChainMode mode) : mode_(mode) {}

  size_t Count(const StkFunction& function);
  StkFunction& At(const StkFunction& function, size_t i);

 private:
  const std::vector<uint32_t>& Largest(const StkFunction& function);

  const ChainMode mode_;
  std::unordered_map<uint32_t, std::vector<uint32_t>> largest_;  // positions, by function index
};

// Every call chain from start in list order, as visits. True when the walk came to its end, false
// when the visitor ended it. Memory grows with the longest chain only; no step depends on the
// thread's stack. Reads the database only.
bool WalkChains(const StkFunction& start, ChainMode mode, ChainVisitor& visitor);

}  // namespace velkor
