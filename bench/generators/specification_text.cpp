#include "bench/generators/specification_text.h"

#include "bench/generators/graph_project.h"
#include "bench/generators/random.h"

namespace velkor::bench {
namespace {

enum class Statement { kMargin, kDepth, kCallee, kAll };

}  // namespace

std::string SpecificationText(uint32_t functions, uint64_t seed) {
  constexpr uint32_t kStatements = 4;
  Random random(seed);
  std::string text;
  for (uint32_t function = 0; function < functions; ++function) {
    const auto statement = static_cast<Statement>(random.Below(kStatements));
    const auto states = [statement](Statement one) {
      return statement == one || statement == Statement::kAll;
    };
    text += GraphFunctionName(function);
    if (states(Statement::kMargin)) {
      text += ", ADD=" + std::to_string(random.Below(100));
    }
    if (states(Statement::kDepth)) {
      text += ", RECTIME=" + std::to_string(1 + random.Below(4));
    }
    if (states(Statement::kCallee)) {
      text += ", CALL=" + GraphFunctionName(function + random.Below(functions - function));
    }
    text += '\n';
  }
  return text;
}

}  // namespace velkor::bench
