#include "files/near_words.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace velkor {

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

std::string NearestWord(std::string_view given, const std::vector<std::string>& words) {
  constexpr size_t kLongest = 64;
  std::string nearest;
  size_t least = std::max<size_t>(2, given.size() / 3) + 1;
  for (const std::string& word : words) {
    const size_t distance = given.size() > kLongest ? least : EditDistance(given, word);
    if (distance < least && distance < word.size()) {
      least = distance;
      nearest = word;
    }
  }
  return nearest;
}

}  // namespace velkor
