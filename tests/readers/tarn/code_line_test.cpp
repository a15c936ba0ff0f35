#include "readers/tarn/code_line.h"

#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "readers/tarn/code_skip.h"

namespace velkor {
namespace {

// What a line of code holds: "segment" or "code" of its directive, "label X", "helper X", "stub X",
// "symbol X".
std::string Found(const std::string& text, bool cut = false, CodePage page = CodePage::Utf8()) {
  const TextLine line{text, text.size() + (cut ? 1 : 0)};
  StkLineScanner scanner(page);
  const SegmentDirective directive = FindSegmentDirective(line);
  std::string found = directive.segment ? "segment " : "";
  found += directive.code ? "code " : "";
  if (const std::string_view label = FindCodeLabel(line); !label.empty()) {
    found += "label " + std::string(label) + " ";
  }
  if (const std::optional<CodeCall> call = FindCodeCall(line, scanner)) {
    constexpr const char* kTargets[] = {"helper ", "stub ", "symbol "};
    found += kTargets[static_cast<size_t>(call->target)] + std::string(call->name) + " ";
  }
  return found.substr(0, found.size() - (found.empty() ? 0 : 1));
}

TEST(CodeLine, WhatALineHolds) {
  const std::pair<std::string, std::string> cases[] = {
      {"CSEG", "segment code"},
      {" \tDseg", "segment"},
      {"@@C CSEG AT 8", "segment code"},
      {"B bsEG", ""},
      {"B BsEg\tx", "segment"},
      {"D cseg", "code"},
      {"DSEG cseg", "segment code"},
      {"a b DSEG", ""},
      {"DSEGX", ""},
      {"XSEG ESEG", ""},
      {";CSEG DSEG", ""},
      {" ;CSEG DSEG", "segment"},
      {std::string("\0 DSEG", 6), ""},
      {"DSEG", "segment"},
      {"_f:", "label _f"},
      {"\t_f : x", "label _f "},
      {"__:", "label __"},
      {"_:", ""},
      {"_@f:", ""},
      {"f:", ""},
      {"_f", ""},
      {"bs_F:", "label bs_F"},
      {"bs_Sx:", "label bs_Sx"},
      {"bs_x:", ""},
      {std::string("_\0f:", 4), ""},
      {"_x DSEG :", "segment label _x DSEG "},
      {"call !@@fmul", "helper fmul"},
      {"\tcallf \t!_@fmul ;far", "helper fmul"},
      {" br !@@fmul", "helper fmul"},
      {"call !bs_Fx", "stub bs_Fx"},
      {"br !bs_S y", "stub bs_S"},
      {"call !@@bcall", "helper bcall"},
      {"call !main", ""},
      {"callf !_main;far", "symbol _main"},
      {"br !_f x", "symbol _f"},
      {"call ! @@fmul", ""},
      {"call @@fmul", ""},
      {"calls !@@fmul", ""},
      {"brx !@@fmul", ""},
      {"mov !@@fmul", ""},
      {"callt [@@fmul]", "helper fmul"},
      {"callt [_@fmul]x", "helper fmul"},
      {"callt [@@bcall]", ""},
      {"callt [_@bcals]", ""},
      {"callt [@@fmul", ""},
      {"callt [fmul]", ""},
      {"callt !@@fmul", ""},
      {"call [@@fmul]", ""},
  };
  for (const auto& [text, found] : cases) {
    EXPECT_EQ(Found(text), found) << text;
  }
  EXPECT_EQ(Found("D CSEG", true), "") << "what is cut may go on";
  EXPECT_EQ(Found("\tcallt [@@\x83\x5Dx]", false, CodePage::ShiftJis()), "helper \x83\x5Dx")
      << "the second byte of the character is a bracket's";
}

// On every way of putting up to six pieces together that the generator meets, wherever the line
// stands in the blocks of bytes that are looked at together.
TEST(CodeLine, NoLineThatHoldsSomethingIsSkipped) {
  std::vector<std::string> pieces = {" ", "\t", " ", "\t", " ", "\xE3", std::string(1, '\0')};
  std::istringstream words(
      "CSEG DSEG bsEg BsEg cseg cSeg C SEG ; : _ @ b bs_F bs_ S call f t br ! [ ] @@ _@ f mov a,#1 "
      "bcall bcals *");
  for (std::string word; words >> word;) {
    pieces.push_back(word);
  }
  pieces.emplace_back("\tcall !_g");
  std::mt19937 random(7);
  size_t found = 0;
  size_t called = 0;
  size_t skipped = 0;
  SkippedLines passed;
  for (int round = 0; round < 100000; ++round) {
    std::string text;
    for (auto count = random() % 7; count > 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    const std::string holds = Found(text);
    const std::string before = "\tnop " + std::string(random() % 140, 'a') + "\n";
    const std::string code = before + text + "\n" + std::string(64, ';');
    SkipPlainCode(code, 2, 200, passed);
    ASSERT_GE(passed.lines, 1U);
    const bool plain = passed.lines == 2;
    const std::string symbol =
        passed.calls.empty() ? "" : "symbol " + std::string(passed.calls[0].name);
    ASSERT_FALSE(plain && (holds != symbol || IsInformationHeading({text, text.size()}))) << text;
    found += holds.empty() ? 0U : 1U;
    called += symbol.empty() ? 0U : 1U;
    skipped += plain ? 1U : 0U;
  }
  EXPECT_GT(found, 1000U);
  EXPECT_GT(called, 10U);
  EXPECT_GT(skipped, 40000U);
}

}  // namespace
}  // namespace velkor
