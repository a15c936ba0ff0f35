#pragma once

#include <cstdint>
#include <vector>

#include "core/function_table.h"

namespace velkor {

// The chains with the maximum stack of the functions of one computed table, which must not change
// meanwhile. Remembers for each function where its chain goes on, so that the chains of many
// functions, which mostly run together, look at the calls of each function once.
class MaximumChains {
 public:
  explicit MaximumChains(const StkFunctionTable& functions);

  // From start down: at each function the first callee (callees, then extra callees) whose total
  // is the largest, until nothing is called or a function of the chain comes again, which then
  // stands once more at its end.
  StkFunctionList From(const StkFunction& start);

 private:
  struct Step {
    uint32_t next = kNotAsked;
    uint32_t chain = 0;  // the last one that went through here
  };

  static constexpr uint32_t kNotAsked = 0xFFFFFFFF;
  static constexpr uint32_t kEnd = 0xFFFFFFFE;

  Step& StepFrom(uint32_t function);

  const StkFunctionTable& functions_;
  std::vector<Step> steps_;  // by index
  uint32_t chain_ = 0;       // counts those asked for
};

}  // namespace velkor
