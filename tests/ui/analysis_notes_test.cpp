#include "main_window.h"
#include "support/module_text.h"

namespace velkor::ui {
namespace {

using testing::ModuleText;

// What the log says beside the lines of the jobs.
struct Said {
  std::string nested;
  std::string ofRing;
  std::string missing;
  std::string ofUnsettledRing;
};

const Said kEnglishSaid = {
    "Note: 2 functions of one recursion state a depth of 2 or more, which multiply: a, b. State 1 "
    "at all but one if its rounds are counted there.\n",
    "2 of 3 top-level functions have no bound (0) or a total below it (2).\n",
    "Note: a is adjusted, but the adjustment leaves out what its bound needs: a recursion depth "
    "(RECTIME=).\n",
    "2 of 3 top-level functions have no bound (2) or a total below it (0).\n"};
const Said kJapaneseSaid = {
    "注: 1つの再帰に属する2個の関数に2以上の深さが指定されており、互いに掛け合わされます: a, "
    "b。回数をそのうちの1つで数えている場合は、ほかの関数には1を指定してください。\n",
    "上限がないか、合計が上限を下回る最上位の関数: 2個 (全3個中)。上限なし: "
    "0個、合計が下回るもの: 2個。\n",
    "注: aは調整されていますが、上限に必要な指定がありません: 再帰の深さ (RECTIME=)。\n",
    "上限がないか、合計が上限を下回る最上位の関数: 2個 (全3個中)。上限なし: "
    "2個、合計が下回るもの: 0個。\n"};

class NotesOfTheWindow : public MainWindow, public ::testing::WithParamInterface<Language> {
 protected:
  NotesOfTheWindow() : MainWindow({"main 10 a", "a 100 b", "b 20 a", "isr 5 b"}, GetParam()) {}

  // Everything from the end of the last file that was read on, and an empty log after it.
  std::string TakeEndOfLog() {
    const std::string log = Log();
    const std::string lastLine = messages.FormatMessageText(MessageKey::kReadingCompleted, {""});
    const size_t read = log.rfind(lastLine);
    app->Frame().GetLogView().Execute(Command::kClearLog);
    return read == std::string::npos ? log : log.substr(read + lastLine.size());
  }
};

TEST_P(NotesOfTheWindow, StandBelowTheLastLineOfEachAnalysis) {
  const Said& said = GetParam() == Language::kEnglish ? kEnglishSaid : kJapaneseSaid;
  host.files.Put(kSystemFile, "a, RECTIME=2\nb, RECTIME=2\n");
  StartAndFinish();
  EXPECT_EQ(TakeEndOfLog(), "\n" + said.nested + said.ofRing);
  Choose(Command::kRecalculate);
  Finish();
  EXPECT_EQ(TakeEndOfLog(), "\n" + said.nested + said.ofRing);

  // Settled for the totals, but not for the bounds.
  host.files.Put("C:\\p\\spec.txt", "a, ADD=0\n");
  host.files.Put(kSystemFile, "");
  Choose(Command::kRecalculate);
  Finish();
  TakeEndOfLog();
  dialogs.answers = {"C:\\p\\spec.txt"};
  Choose(Command::kLoadSpecFile);
  Finish();
  const std::string loaded = TakeEndOfLog();
  EXPECT_TRUE(loaded.ends_with(said.missing + said.ofUnsettledRing)) << loaded;

  host.files.Put("C:\\p\\a.asm", ModuleText("a.c", {"main 10"}));
  host.files.Put(kSystemFile, "");
  Choose(Command::kRecalculate);
  Finish();
  EXPECT_EQ(TakeEndOfLog(), "\n") << "nothing to say";
}

INSTANTIATE_TEST_SUITE_P(Languages, NotesOfTheWindow,
                         ::testing::Values(Language::kEnglish, Language::kJapanese));

}  // namespace
}  // namespace velkor::ui
