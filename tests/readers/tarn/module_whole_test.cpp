#include <fstream>
#include <iterator>

#include "core/bounds.h"
#include "core/function_text.h"
#include "core/recompute.h"
#include "readers/tarn/module_reading.h"

namespace velkor {
namespace {

using testing::ModuleReading;
using testing::ModuleText;
using Texts = std::vector<std::string>;

// Rule and line of each note; "!" where something was not read.
Texts Described(const std::vector<StkNote>& notes) {
  Texts texts;
  for (const StkNote& note : notes) {
    EXPECT_EQ(note.file, testing::kModulePath);
    texts.push_back(std::string(note.rule) + ":" + std::to_string(note.line) +
                    (note.incomplete ? "!" : ""));
  }
  return texts;
}

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
  for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
    text.replace(at, what.size(), with);
  }
  return text;
}

TEST(ModuleWhole, WhatIsMissingIsNotedAndTheLogStays) {
  const ModuleText whole;
  const std::string all = whole.All();
  const std::string head = whole.header + whole.symbols + whole.code;
  const std::string twoSymbols = whole.symbols + Replaced(whole.symbols, "_f", "_g");
  const std::string heading = "; *** Code Information ***\n";
  const std::string variable = "$DGS GLV_SYM, _v, 0, 0, 0, 0, 0, 01H\n";
  const std::pair<std::string, Texts> cases[] = {
      {all, {}},
      {Replaced(all, "\n", "\r\n"), {}},
      {all + "\x1A", {}},
      {whole.header, {}},
      {whole.header + variable + "D DSEG\n_v:\tDS (1)\n", {}},
      // In the middle of a line, of the file or of one that consists of lines of another kind.
      {all.substr(0, all.size() - 1), {"module-not-whole:10!"}},
      {all + "; \x1A", {"module-not-whole:11!"}},
      {Replaced(all, "\n", "\r"), {"module-not-whole:1!"}},
      // In the middle of a statement.
      {head + heading, {"module-not-whole:6!"}},
      {head + heading + ";\n" + whole.functions, {"module-not-whole:9!"}},
      {head + heading + "; $FILE C:\\p\\m.c\n", {"module-not-whole:7!"}},
      {head + whole.file + "; $FUNC f()\n", {"module-not-whole:9!"}},
      {head + whole.file + "; $FUNC f\n", {"module-not-whole:9!"}},
      {all + "; $CALL g\n", {"module-not-whole:11!"}},
      // Code without a record, also in the first segment.
      {whole.header + twoSymbols + whole.code + "_g:\n" + whole.file + whole.functions,
       {"module-not-whole:7!"}},
      {whole.header + twoSymbols + "C CSEG\n_f:\n_g:\n" + whole.file + whole.functions,
       {"module-not-whole:6!"}},
      {head, {"module-not-whole:5!"}},
      // Written without what an analysis needs.
      {whole.header + whole.symbols, {"no-information-block:2"}},
      {whole.header + whole.code + "\tret\n", {"no-information-block:4"}},
      {whole.header + whole.file + whole.functions, {"no-information-block:5"}},
  };
  for (const auto& [text, notes] : cases) {
    ModuleReading reading;
    EXPECT_TRUE(reading.Read(text)) << text;
    EXPECT_EQ(Described(reading.notes), notes) << text;
    EXPECT_EQ(reading.Log(), Texts()) << text;
  }
}

TEST(ModuleWhole, CallsThatTheRecordDoesNotListAreHidden) {
  ModuleText module;
  for (const char name : {'g', 'h', 'i', 'u', 'w'}) {
    module.symbols += Replaced(ModuleText().symbols, "_f", std::string("_") + name);
  }
  module.symbols += "$DGS GLV_SYM, _v, 0, 0, 0, 0, 0, 01H\n";
  const std::string code =
      "_f:\n\tcall\t!_g\n\tcallf !_h ; far\n\tcall !_h\n\tbr !_i;x\n\tcall !_f\n\tcall "
      "!_v\n\tcalls "
      "!_w\n_v:\n\tbr !_w\nbs_Fu:\n\tbr !_u\n";
  for (const char* segments : {"D DSEG\nC CSEG\n", "C CSEG\n;\n"}) {
    module.code = segments + code;
    for (const size_t readLimit : {size_t{1}, size_t{SIZE_MAX}}) {
      ModuleReading reading;
      reading.HostFiles().SetReadLimit(readLimit);
      EXPECT_TRUE(reading.Read(module.All() + "; $CALL g()\n"));
      EXPECT_EQ(Described(reading.notes),
                (Texts{"hidden-call:13", "hidden-call:15", "hidden-call:20"}));
      EXPECT_TRUE(reading.notes[0].text.starts_with("f calls h here, ")) << reading.notes[0].text;
      EXPECT_TRUE(reading.Function("_f").Is(FN_HIDDEN_CALL));
      EXPECT_EQ(reading.CallNames("_f"), Texts{"_g"});
    }
  }
  // Also in a module that is not read to its end.
  ModuleReading reading;
  module.functions += "; $FUNC g(" + std::string("\n; CODE SIZE=9");
  EXPECT_TRUE(reading.Read(module.All()));
  EXPECT_EQ(Described(reading.notes).back(), "module-not-whole:29!");
  EXPECT_TRUE(reading.Function("_f").Is(FN_HIDDEN_CALL));
}

struct Sizes {
  std::map<std::string, uint64_t> complete;  // of functions whose bound is told without reserve
  std::map<std::string, uint64_t> known;
  bool noticed = false;
};

// What the functions of a module need, where every other function of the whole one needs 4 bytes.
Sizes SizesOf(const std::string& text, const std::vector<std::string>& others,
              std::vector<std::string>* unknown = nullptr) {
  ModuleReading reading;
  Sizes sizes;
  const bool read = reading.Read(text);
  sizes.noticed = !read || !reading.notes.empty();
  reading.functions.ResolveAllCalls();
  for (StkFunction* function : reading.functions.Functions()) {
    if (function->IsUnknown() && unknown != nullptr) {
      unknown->emplace_back(function->name);
    }
    if (function->IsUnknown() &&
        (unknown != nullptr || std::ranges::find(others, function->name) != others.end())) {
      reading.functions.SetLibrarySize(*function, 4);
    }
  }
  StkRootList roots;
  Recompute(reading.functions, roots, true, nullptr, nullptr, reading.recorder.reporter);
  StkBounds bounds(reading.functions);
  bounds.Update();
  for (const StkFunction* function : reading.functions.Functions()) {
    const std::string name(function->name);
    sizes.known[name] = bounds.Known(*function);
    if (bounds.IsComplete(*function)) {
      sizes.complete[name] = bounds.Known(*function);
    }
  }
  return sizes;
}

// The lengths, from one on, at which the text can be cut so that a number that is told without
// reserve is too small, with or without a note.
std::vector<size_t> WrongCuts(const std::string& text, size_t from) {
  std::vector<std::string> others;
  const Sizes whole = SizesOf(text, {}, &others);
  EXPECT_FALSE(whole.noticed);
  EXPECT_FALSE(whole.complete.empty());
  std::vector<size_t> cuts;
  for (size_t length = from; length < text.size(); ++length) {
    const Sizes cut = SizesOf(text.substr(0, length), others);
    const bool tooSmall = std::ranges::any_of(cut.complete, [&](const auto& function) {
      const auto complete = whole.complete.find(function.first);
      return complete == whole.complete.end() || complete->second > function.second;
    });
    if (tooSmall) {
      cuts.push_back(length);
    }
  }
  return cuts;
}

std::string ExampleModule() {
  std::ifstream file(VELKOR_SOURCE_DIR "/examples/firmware/asm/parser.asm", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ModuleWhole, CutAnywhereNoCompleteNumberIsTooSmall) {
  std::string text = ExampleModule();
  EXPECT_EQ(WrongCuts(text, 0), std::vector<size_t>());
  // A compiler could have written this text whole: the call through a pointer that is cut off shows
  // nowhere in the code, and all that it lists follows the function's record.
  const std::string record = "; $FUNC run_command";
  const size_t start = text.find(record);
  const size_t end = text.find("; $FUNC command_show");
  ASSERT_LT(start, end);
  const std::string moved = text.substr(start, end - start);
  text.erase(start, end - start);
  text += moved;
  const size_t last = text.find(record);
  EXPECT_EQ(WrongCuts(text, last), std::vector<size_t>{text.find("; $CALL", last)});
}

}  // namespace
}  // namespace velkor
