#include "reports/function_parts.h"

#include <algorithm>
#include <vector>

#include "platform/ordered_work.h"

namespace velkor::reports {
namespace {

constexpr size_t kFunctionsPerPart = 2048;

}  // namespace

void FunctionParts::Run() const {
  OrderedWork work{.parts = (functions + kFunctionsPerPart - 1) / kFunctionsPerPart,
                   .threads = threads,
                   .make = {},
                   .take = {}};
  std::vector<std::string> texts(work.Slots());
  work.make = [&](size_t part, size_t slot) {
    const size_t first = part * kFunctionsPerPart;
    texts[slot].clear();
    make(static_cast<uint32_t>(first),
         static_cast<uint32_t>(std::min(functions, first + kFunctionsPerPart)), texts[slot]);
  };
  work.take = [&](size_t, size_t slot) { take(texts[slot]); };
  work.Run();
}

}  // namespace velkor::reports
