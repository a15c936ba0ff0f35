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

// What a parser records that is handed every line, the lines split byte by byte.
ModuleRecording RecordSlowly(const std::string& bytes, const CodePage& page) {
  ModuleRecording recording;
  ModuleParser parser(page, recording);
  std::string text = bytes.substr(0, bytes.find('\x1A'));
  for (size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos; ++at) {
    text.erase(at, 1);
  }
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    if (++recording.lastLine > StkAsmModuleReader::kMaxLines) {
      recording.end = ModuleRecording::End::kTooManyLines;
      break;
    }
    if (end - at > 5119) {
      recording.events.push_back({ModuleRecording::Step::kLongLine, recording.lastLine});
    }
    const std::string_view kept =
        std::string_view(text).substr(at, std::min<size_t>(end - at, 5118));
    if (!parser.HandleLine({kept, end - at})) {
      recording.end = ModuleRecording::End::kFormatError;
      break;
    }
    at = end + 1;
  }
  if (recording.lastLine == 0) {
    recording.end = ModuleRecording::End::kNoLine;
  }
  return recording;
}

std::string AsText(const ModuleRecording& recording) {
  std::ostringstream out;
  out << recording.family << ' ' << recording.version << ' ' << recording.sourceFile << '\n';
  for (const auto& [step, value] : recording.events) {
    out << static_cast<int>(step) << ' ' << value << '\n';
  }
  for (const ModuleRecording::Function& function : recording.functions) {
    out << recording.names.Name(function.name) << function.isStatic << function.presetMargin
        << function.callsHelpers << ' ' << function.stackFigure << ' ' << function.cprep2Count
        << ' ' << function.firstHelper << '\n';
  }
  for (const uint32_t helper : recording.helpers) {
    out << recording.helperNames.Name(helper) << '\n';
  }
  for (uint32_t name = 0; name < recording.names.size(); ++name) {
    out << recording.names.Name(name) << '\n';
  }
  out << static_cast<int>(recording.end) << ' ' << recording.lastLine;
  return out.str();
}

// Whatever is skipped unlooked at would have recorded nothing: lines that come near to what is
// recorded, in files larger than what is read at once.
TEST(ModuleRobustness, RecordsWhatEveryLineSays) {
  static const std::vector<std::string> kPieces = {"\t",
                                                   " ",
                                                   "\n",
                                                   "\n",
                                                   "\r\n",
                                                   "\r",
                                                   ":",
                                                   "; ",
                                                   ";",
                                                   "*** ",
                                                   "_f",
                                                   "_g:",
                                                   "bs_F1",
                                                   "bs_F1:",
                                                   "CSEG",
                                                   "cseg",
                                                   "DSEG",
                                                   "Bseg",
                                                   "call",
                                                   "br",
                                                   "callt",
                                                   "!_@lsub",
                                                   "!@@cprep2",
                                                   "!bs_F1",
                                                   "!_g",
                                                   "[@@lmul]",
                                                   "mov",
                                                   "cmp ",
                                                   "bnz\t",
                                                   "a,b",
                                                   "@@C",
                                                   "$DGS",
                                                   "s",
                                                   "\n\tcall\t!@@cprep2\n",
                                                   "\n\tcallt\t[@@lmul]\n",
                                                   "\n_f:\n",
                                                   "\n_g:\n",
                                                   "\n@@C\tCSEG\n"};
  std::mt19937 random(5);
  size_t helpers = 0;
  for (int round = 0; round < 400; ++round) {
    ModuleText module;
    for (int count = round % 40 == 0 ? 60000 : 150; count > 0; --count) {
      module.code += kPieces[random() % kPieces.size()];
    }
    module.code += round % 10 == 0 ? std::string(1 + random() % 11000, 'x') : "";
    module.code += round % 7 == 0 ? "\x1A" : "\n";
    module.functions =
        "; $FUNC f()\n; CODE SIZE=9 bytes, 0, STACK_SIZE=10 bytes\n; $FUNC g()\n"
        "; CODE SIZE=9 bytes, 0, STACK_SIZE=10 bytes\n";
    const std::string text = round % 2 == 0 ? module.All() : Mutated(module.All(), random);
    const CodePage page = round % 3 == 0 ? CodePage::ShiftJis() : CodePage::Utf8();
    testing::TestHost host(page);
    const ModuleRecording recording = testing::Record(host, text);
    ASSERT_EQ(AsText(recording), AsText(RecordSlowly(text, page))) << round;
    helpers += recording.helpers.size();
  }
  EXPECT_GT(helpers, 100U);
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
