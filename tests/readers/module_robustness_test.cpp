#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "readers/module_reading.h"

namespace velkor {
namespace {

using testing::ModuleReading;
using testing::ModuleText;

void ExpectSoundRecords(const ModuleReading& reading) {
  for (const auto& function : reading.functions.Functions()) {
    ASSERT_TRUE(function->Is(FN_DEFINED));
    ASSERT_NE(function->file, nullptr);
    ASSERT_TRUE(function->name.starts_with('_'));
    ASSERT_TRUE(function->frameSize <= kSizeLimit || function->frameSize == kOverSize);
  }
}

std::string Mutated(const std::string& module, std::mt19937& random) {
  static const std::vector<std::string> kPieces = {"\n",         "\r\n",   std::string(1, '\0'),
                                                   "\x1A",       "\xFF",   "\x83",
                                                   ":",          "$CALL ", "; $FUNC ",
                                                   ",",          "%s%n",   std::string(5200, 'a'),
                                                   "65536",      "bs_F",   "CSEG\n",
                                                   "[@@cprep2]", " "};
  std::string text = module;
  for (auto count = 1 + random() % 6; count > 0; --count) {
    const size_t position = random() % (text.size() + 1);
    switch (random() % 4) {
      case 0:
        text.erase(position, random() % 40);
        break;
      case 1:
        text.insert(position, kPieces[random() % kPieces.size()]);
        break;
      case 2:
        text.insert(position, text.substr(random() % (text.size() + 1), random() % 120));
        break;
      default:
        text[position % std::max<size_t>(text.size(), 1)] = static_cast<char>(random() % 256);
    }
    text += text.empty() ? "\n" : "";
  }
  return text;
}

TEST(ModuleRobustness, MutatedModules) {
  ModuleText module;
  module.header = "; Tarn C Compiler V3.60 Assembler Source\n";
  module.symbols += "$DGS STA_SYM, _sub, 0, 0, 07abcH, 0, 0, 02H\n";
  module.code += "\tcallt [@@cprep2]\nbs_Fx:\n\tbr !@@lsmul\n_sub:\n\tcall !bs_Fx\n";
  module.functions += "; $CALL sub()\n; $FUNC su\n;b()\n; CODE SIZE=1, 2, STACK_SIZE=3 bytes\n";
  module.functions += "; $CALL pointer()\n";
  const std::string text = module.All();
  std::mt19937 random(11);
  for (const CodePage& page : {CodePage::Utf8(), CodePage::ShiftJis()}) {
    size_t functions = 0;
    for (int round = 0; round < 300; ++round) {
      ModuleReading reading(page);
      reading.Read(Mutated(text, random));
      ExpectSoundRecords(reading);
      functions += reading.functions.Count();
    }
    EXPECT_GT(functions, 100U);
  }
}

TEST(ModuleRobustness, RandomBytesAfterAHeader) {
  std::mt19937 random(5);
  for (int round = 0; round < 50; ++round) {
    ModuleReading reading;
    std::string bytes = testing::kHeader;
    for (int i = 0; i < 3000; ++i) {
      bytes += static_cast<char>(random() % 256);
    }
    reading.Read(bytes);
    ExpectSoundRecords(reading);
  }
}

// A real call graph: every module is read without a word, and gives what its block lists.
TEST(ModuleRobustness, ExampleProject) {
  const std::filesystem::path folder = std::string(VELKOR_SOURCE_DIR) + "/examples/lua";
  if (!std::filesystem::exists(folder)) {
    GTEST_SKIP() << folder << " is not there";
  }
  ModuleReading reading;
  size_t modules = 0;
  uint32_t listed = 0;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    if (file.path().extension() != ".asm") {
      continue;
    }
    std::ifstream stream(file.path(), std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    EXPECT_TRUE(reading.Read(bytes.str())) << file.path();
    std::istringstream lines(bytes.str());
    for (std::string line; std::getline(lines, line);) {
      listed += line.find("STACK_SIZE=") != std::string::npos ? 1U : 0U;
    }
    ++modules;
  }
  EXPECT_GT(modules, 20U);
  EXPECT_EQ(reading.Log(), std::vector<std::string>());
  EXPECT_EQ(reading.functions.Count(), listed);
  EXPECT_EQ(reading.files.size(), modules);
  ExpectSoundRecords(reading);
}

}  // namespace
}  // namespace velkor
