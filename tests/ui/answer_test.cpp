#include <QLabel>
#include <QTest>

#include "main_window.h"
#include "ui/picture/picture_colors.h"
#include "ui/sign_colors.h"
#include "ui/text_colors.h"

namespace velkor::ui {
namespace {

// main calls a ring and a function that is not there, and has the largest total; lone is bounded.
class AnswerOfTheWindow : public MainWindow {
 protected:
  AnswerOfTheWindow() : MainWindow({"main 10 f ring", "f 20 x", "ring 5 ring", "lone 25"}) {}
  explicit AnswerOfTheWindow(Language language)
      : MainWindow({"main 10 f ring", "f 20 x", "ring 5 ring", "lone 25"}, language) {}

  void AwaitAnswer(const QString& lead) {
    ASSERT_TRUE(WaitUntil([&] { return Summary().LeadText() == lead; }))
        << Summary().LeadText().toStdString();
  }
  SummaryPane& Summary() { return app->Frame().Answers().Summary(); }
  PictureView& Picture() { return app->Frame().Answers().Picture(); }

  // A line for each row below its title: its cells.
  static std::string TextOf(const SummaryTable& table) {
    const QAbstractItemModel& model = *table.model();
    std::string text;
    for (int group = 0; group < model.rowCount(); ++group) {
      const QModelIndex title = model.index(group, 0);
      text += title.data().toString().toStdString() + "\n";
      for (int row = 0; row < model.rowCount(title); ++row) {
        for (int column = 0; column < model.columnCount(); ++column) {
          text += (column == 0 ? "  " : " | ") +
                  model.index(row, column, title).data().toString().toStdString();
        }
        text += "\n";
      }
    }
    return text;
  }
  // On the name of a row.
  static void ClickRow(SummaryTable& table, int group, int row) {
    const QModelIndex index = table.model()->index(row, 0, table.model()->index(group, 0));
    table.scrollTo(index);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier,
                      table.visualRect(index).center());
  }
};

constexpr const char* kOpen =
    "main needs the most: at least 30 bytes. Top-level functions: 3; without a bound: 1.";

TEST_F(AnswerOfTheWindow, TellsWhatIsLargestAndWhatToStateNext) {
  StartAndFinish();
  AwaitAnswer(kOpen);
  EXPECT_EQ(TextOf(Summary().Needs()),
            "Top-level functions by need (3)\n"
            "  main | ≥30 | unknown size ([x]), recursion (ring)\n"
            "  lone | 25 | \n"
            "  g | 5 | \n");
  EXPECT_EQ(TextOf(Summary().Wanted()),
            "State next (2)\n"
            "  [x] | its bytes (ADD=) | 1 with the next 1\n"
            "  ring | its depth (RECTIME=) | with those above\n");

  // Each leads to where it is dealt with.
  ClickRow(Summary().Needs(), 0, 1);
  EXPECT_EQ(TreeText(), "main\nlone <\ng\n");
  adjustAnswer = {true, StkAdjustment()};
  adjustAnswer.adjustment->depth = 1;
  ClickRow(Summary().Wanted(), 0, 1);
  EXPECT_EQ(adjusted, std::vector<std::string>{"_ring"});
  adjustAnswer.adjustment = StkAdjustment();
  adjustAnswer.adjustment->margin = 7;
  StkFunction* x = Document().FunctionTable()->FindBySpecName("", "x", true);
  ASSERT_TRUE(Document().AdjustFunction(*x, *adjustAnswer.adjustment));
  Finish();
  AwaitAnswer("main needs the most: 37 bytes. Top-level functions: 3; without a bound: 0.");
  EXPECT_EQ(TextOf(Summary().Wanted()), "");

  Document().Recalculate();
  EXPECT_EQ(Summary().LeadText(), "There is no analysis yet.");
}

TEST_F(AnswerOfTheWindow, ThePictureIsReadWithKeysAndLeadsToTheTree) {
  StartAndFinish();
  EXPECT_TRUE(WaitUntil([this] { return Picture().HasPicture(); }));
  Choose(Command::kShowPicture);
  const auto press = [this](Qt::Key key) {
    QTest::keyClick(&Picture(), key);
    return Picture().CurrentText().toStdString();
  };
  EXPECT_EQ(press(Qt::Key_Home), "main. main: 10 bytes");
  EXPECT_EQ(press(Qt::Key_Down), "main. f: 20 bytes");
  EXPECT_EQ(press(Qt::Key_End),
            "main. not known: size not known: [x]\nrecursion that no depths limit: ring");
  EXPECT_EQ(press(Qt::Key_Right), "lone. lone: 25 bytes");
  EXPECT_EQ(press(Qt::Key_Left), "main. main: 10 bytes") << "at the same height";
  press(Qt::Key_Down);
  EXPECT_EQ(press(Qt::Key_Plus), "main. f: 20 bytes");
  press(Qt::Key_Return);
  EXPECT_TRUE(WaitUntil([this] { return TreeText().find("f <") != std::string::npos; }));
  EXPECT_EQ(TreeText(), "main\n  f <\n  ring*\nlone\ng\n");

  dialogs.answers = {"C:\\p\\picture.svg"};
  Choose(Command::kSavePicture);
  const std::string file = host.files.Get("C:\\p\\picture.svg").value_or("");
  EXPECT_NE(file.find(">20 f</text>"), std::string::npos) << file;
}

TEST(AnswerColors, AreReadOnEitherTheme) {
  QPalette dark(QColor(53, 53, 53));
  dark.setColor(QPalette::Base, QColor(35, 35, 35));
  dark.setColor(QPalette::Text, Qt::white);
  dark.setColor(QPalette::Link, Qt::blue);
  QPalette light(QColor(240, 240, 240));
  light.setColor(QPalette::Base, Qt::white);
  light.setColor(QPalette::Text, Qt::black);
  light.setColor(QPalette::Link, Qt::cyan);
  for (const QPalette& palette : {dark, light}) {
    const PictureColors colors = PictureColorsOf(palette);
    EXPECT_GE(Contrast(PaleText(palette), colors.ground), kReadable);
    EXPECT_GE(Contrast(LinkText(palette), colors.ground), kReadable);
    EXPECT_GE(Contrast(colors.stackLine, colors.ground), kReadable);
    for (int kind = 0; kind <= static_cast<int>(reports::IcicleKind::kMissing); ++kind) {
      const QColor fill = colors.Fill(static_cast<reports::IcicleKind>(kind));
      EXPECT_GE(Contrast(colors.ink, fill), kReadable) << kind;
    }
    EXPECT_GE(Contrast(colors.ink, colors.hatch), kReadable);
  }
}

class JapaneseAnswer : public AnswerOfTheWindow {
 protected:
  JapaneseAnswer() : AnswerOfTheWindow(Language::kJapanese) {}
};

TEST_F(JapaneseAnswer, FillsInItsTexts) {
  StartAndFinish();
  AwaitAnswer(
      "最も多く必要とするのは main: 少なくとも 30 バイト。最上位の関数: 3個、上限なし: 1個。");
  EXPECT_TRUE(WaitUntil([this] { return Picture().HasPicture(); }));
  EXPECT_EQ(Picture().CurrentText(), "main. main: 10 バイト");
}

}  // namespace
}  // namespace velkor::ui
