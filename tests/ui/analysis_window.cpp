#include "analysis_window.h"

#include <QTest>
#include <sstream>

namespace velkor::testing {

namespace {

constexpr std::string_view kTexts =
    "35000 Function\n35001 Total\n35002 Frame\n35003 Margin\n35004 File\n"
    "1000005 Sort\n1032785 Adjust\n1032778 Name\n1032779 Icon\n1032780 Size\n"
    "1032781 Frame\n1032782 Margin\n1032783 File\n";

std::string Module(const std::vector<std::string>& functions) {
  std::string symbols;
  std::string block;
  for (const std::string& line : functions) {
    std::istringstream words(line);
    std::string name;
    std::string frame;
    words >> name >> frame;
    symbols += "$DGS GLV_SYM, _" + name + ", U, U, 00H, 026H, 01H, 02H\n";
    block += "; $FUNC " + name +
             "(1)\n;\tCODE SIZE= 3 bytes, CLOCK_SIZE= 3 clocks, STACK_SIZE= " + frame + " bytes\n";
    for (std::string callee; words >> callee;) {
      block += "; $CALL " + callee + "()\n";
    }
    block += ";\n";
  }
  return "; Ta/rn Series C Compiler V3.70 Assembler Source\n\n" + symbols +
         "\n@@CODE\tCSEG\n\tEND\n\n; *** Code Information ***\n;\n; $FILE C:\\p\\a.c\n;\n" + block;
}

}  // namespace

void AnalysisWindow::QueuedWindow::Post(uint32_t message, uint64_t parameter) {
  owner.recorder.queue.Post(
      [this, message, parameter] { owner.monitor.Handle(message, parameter); });
}

AnalysisWindow::AnalysisWindow(const std::vector<std::string>& functions)
    : texts(host.codePage, {kTexts}) {
  host.files.AddDirectory("C:\\p");
  host.files.Put("C:\\p\\app.prj", "[ProjectManager]\nPath=C:\\p\n[SrcFile]\nSource1=a.c\n");
  host.files.Put("C:\\p\\a.asm", Module(functions));
  tree.resize(300, 600);
  list.resize(700, 300);
  tree.show();
  list.show();
}

AnalysisWindow::~AnalysisWindow() {
  Finish();
}

void AnalysisWindow::Open() {
  ASSERT_TRUE(document.OnOpenDocument("C:\\p\\app.prj"));
  document.StartAnalysis();
  Finish();
  ASSERT_NE(document.FunctionTable()->Count(), 0u);
}

void AnalysisWindow::Finish() {
  recorder.queue.RunUntil([this] {
    return !document.IsAnalysing() && !document.IsReadingSpecifications() &&
           !document.IsWritingSpecifications();
  });
  recorder.queue.Drain();
}

StkFunction& AnalysisWindow::Function(const std::string& cName) {
  return *document.FunctionTable()->FindBySpecName("", cName, false);
}

std::string AnalysisWindow::Tree() const {
  std::string text;
  for (QModelIndex index = tree.model()->index(0, 0); index.isValid();
       index = tree.indexBelow(index)) {
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
      text += "  ";
    }
    text += index.data().toString().toStdString();
    text += tree.selectionModel()->isSelected(index) ? " <\n" : "\n";
  }
  return text;
}

std::string AnalysisWindow::List() const {
  std::string text;
  for (int row = 0; row < list.model()->rowCount(); ++row) {
    for (int column = 0; column < 4; ++column) {
      text += (column == 0 ? "" : "|") +
              list.model()->index(row, column).data().toString().toStdString();
    }
    text += "\n";
  }
  return text;
}

QModelIndex AnalysisWindow::Node(const QString& name, int occurrence) const {
  QModelIndex index = tree.model()->index(0, 0);
  while (index.isValid() && (index.data().toString() != name || occurrence-- > 0)) {
    index = tree.indexBelow(index);
  }
  EXPECT_TRUE(index.isValid()) << name.toStdString();
  return index;
}

void AnalysisWindow::Click(const QModelIndex& index, Qt::MouseButton button) {
  QTest::mouseClick(tree.viewport(), button, Qt::NoModifier, tree.visualRect(index).center());
}

}  // namespace velkor::testing
