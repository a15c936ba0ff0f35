#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/fuzzers.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

struct Case {
  testing::NamedFuzzer fuzzer;
  fs::path file;
};

std::vector<Case> Corpus() {
  std::vector<Case> cases;
  for (const testing::NamedFuzzer& fuzzer : testing::AllFuzzers()) {
    const fs::path folder = fs::path(VELKOR_SOURCE_DIR) / "tests" / "fuzz" / "corpus" / fuzzer.name;
    for (const auto& file : fs::directory_iterator(folder)) {
      cases.push_back({fuzzer, file.path()});
    }
  }
  std::sort(cases.begin(), cases.end(),
            [](const Case& a, const Case& b) { return a.file < b.file; });
  return cases;
}

std::string NameOf(const ::testing::TestParamInfo<Case>& info) {
  std::string name =
      std::string(info.param.fuzzer.name) + "_" + info.param.file.filename().string();
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

class Replay : public ::testing::TestWithParam<Case> {};

// A broken invariant ends the program; the case that runs last is the one.
TEST_P(Replay, KeepsEveryInvariant) {
  std::ifstream stream(GetParam().file, std::ios::binary);
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  ASSERT_TRUE(stream) << GetParam().file;
  GetParam().fuzzer.fuzzer(bytes.str());
}

INSTANTIATE_TEST_SUITE_P(Corpus, Replay, ::testing::ValuesIn(Corpus()), NameOf);

TEST(Replay, EveryFuzzerTakesAnEmptyInput) {
  for (const testing::NamedFuzzer& fuzzer : testing::AllFuzzers()) {
    fuzzer.fuzzer("");
  }
}

}  // namespace
}  // namespace velkor
