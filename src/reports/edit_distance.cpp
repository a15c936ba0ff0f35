#include "reports/edit_distance.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace velkor::reports {

size_t EditDistance(std::string_view left, std::string_view right) {
  std::vector<size_t> beforeLast(right.size() + 1);
  std::vector<size_t> last(right.size() + 1);
  std::iota(last.begin(), last.end(), size_t{0});
  for (size_t i = 0; i < left.size(); ++i) {
    std::vector<size_t> row(right.size() + 1);
    row[0] = i + 1;
    for (size_t j = 0; j < right.size(); ++j) {
      const size_t replaced = last[j] + (left[i] == right[j] ? 0U : 1U);
      row[j + 1] = std::min({replaced, last[j + 1] + 1, row[j] + 1});
      if (i > 0 && j > 0 && left[i] == right[j - 1] && left[i - 1] == right[j]) {
        row[j + 1] = std::min(row[j + 1], beforeLast[j - 1] + 1);
      }
    }
    beforeLast = std::exchange(last, std::move(row));
  }
  return last.back();
}

}  // namespace velkor::reports
