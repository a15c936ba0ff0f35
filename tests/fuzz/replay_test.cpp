#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/fuzzers.h"

namespace velkor {
namespace {

namespace fs = std::filesystem;

const fs::path kFolder = fs::path(VELKOR_SOURCE_DIR) / "tests" / "fuzz";

struct Case {
  testing::NamedFuzzer fuzzer;
  fs::path file;
};

std::string ReadFile(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  EXPECT_TRUE(stream) << path;
  return bytes.str();
}

std::vector<Case> Corpus() {
  std::vector<Case> cases;
  for (const testing::NamedFuzzer& fuzzer : testing::kFuzzers) {
    for (const auto& file : fs::directory_iterator(kFolder / "corpus" / fuzzer.name)) {
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
  GetParam().fuzzer.fuzzer(ReadFile(GetParam().file));
}

INSTANTIATE_TEST_SUITE_P(Corpus, Replay, ::testing::ValuesIn(Corpus()), NameOf);

// The tokens of a dictionary file: a quoted text a line.
std::vector<std::string> Tokens(const fs::path& path) {
  std::vector<std::string> tokens;
  std::istringstream lines(ReadFile(path));
  for (std::string line; std::getline(lines, line);) {
    std::string token;
    for (size_t i = 1; i + 1 < line.size(); ++i) {
      if (line.compare(i, 2, "\\x") == 0) {
        token += static_cast<char>(std::stoi(line.substr(i + 2, 2), nullptr, 16));
        i += 3;
      } else {
        i += line[i] == '\\' ? 1U : 0U;
        token += line[i];
      }
    }
    tokens.push_back(token);
  }
  return tokens;
}

std::string Mutated(std::string text, const std::vector<std::string>& tokens,
                    std::mt19937& random) {
  for (auto count = 1 + random() % 6; count > 0; --count) {
    const size_t position = random() % (text.size() + 1);
    switch (random() % 6) {
      case 0:
        text.erase(position, random() % 40);
        break;
      case 1:
        text.insert(position, text.substr(random() % (text.size() + 1), random() % 120));
        break;
      case 2:
        text.insert(position, 1, static_cast<char>(random()));
        break;
      case 3:
        text.insert(position, random() % 16 == 0 ? 5200 : random() % 4, text[position]);
        break;
      default:
        text.insert(position, tokens[random() % tokens.size()]);
    }
  }
  return text;
}

class Mutations : public ::testing::TestWithParam<testing::NamedFuzzer> {};

// The same inputs at each run: those of the corpus with something amiss.
TEST_P(Mutations, KeepEveryInvariant) {
  const std::string name(GetParam().name);
  const std::vector<std::string> tokens = Tokens(kFolder / (name + ".dict"));
  std::vector<std::string> inputs = {""};
  for (const Case& one : Corpus()) {
    if (one.fuzzer.name == name) {
      inputs.push_back(ReadFile(one.file));
    }
  }
  std::mt19937 random(20240605);
  for (int round = 0; round < 2000; ++round) {
    GetParam().fuzzer(Mutated(inputs[random() % inputs.size()], tokens, random));
  }
}

INSTANTIATE_TEST_SUITE_P(, Mutations, ::testing::ValuesIn(testing::kFuzzers),
                         [](const auto& test) { return std::string(test.param.name); });

// Histories of small graphs, each against the literal model.
TEST(Replay, RandomGraphs) {
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    std::string bytes(40 + random() % 120, '\0');
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random()); });
    testing::FuzzGraph(bytes);
  }
}

// Code is passed over in what is read at once; here a line can end wherever that does.
TEST(Replay, AModuleLargerThanWhatIsReadAtOnce) {
  const std::vector<std::string> tokens = Tokens(kFolder / "module.dict");
  const std::string function = "; CODE SIZE=9 bytes, 0, STACK_SIZE=10 bytes\n";
  std::mt19937 random(5);
  for (int round = 0; round < 5; ++round) {
    std::string text = "0\xF6; Tarn C Compiler V3.70 Assembler Source\n";
    text += "$DGS GLV_SYM, _f, 0, 0, 0, 0, 0, 02H\nD DSEG\nC CSEG\n_f:\n";
    while (text.size() < 300000) {
      const std::string& token = tokens[random() % tokens.size()];
      const bool ends = token.find_first_of("*\x1A") != std::string::npos || token == "\n@@@@\n";
      text += ends ? "\tmov\ta,b\n" : token + (random() % 3 == 0 ? "\n" : "");
    }
    text += "\n; *** Code Information ***\n; $FILE m.c\n;\n; $FUNC f()\n" + function;
    testing::FuzzModule(text);
  }
}

}  // namespace
}  // namespace velkor
