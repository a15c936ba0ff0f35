#include "main_window.h"

#include <QTest>

#include "core/adjustments.h"

namespace velkor::testing {

namespace {

constexpr const char* kModuleA =
    "; Ta/rn Series C Compiler V3.70 Assembler Source\n"
    "$DGS GLV_SYM, _main, U, U, 00H, 026H, 01H, 02H\n"
    "$DGS GLV_SYM, _f, U, U, 00H, 026H, 01H, 02H\n"
    "$DGS GLV_SYM, _x, U, U, 00H, 026H, 01H, 02H\n"
    "@@CODE\tCSEG\n\tEND\n; *** Code Information ***\n;\n; $FILE C:\\p\\a.c\n;\n"
    "; $FUNC main(1)\n;\tCODE SIZE= 3 bytes, CLOCK_SIZE= 3 clocks, STACK_SIZE= 10 bytes\n"
    "; $CALL f()\n;\n"
    "; $FUNC f(2)\n;\tCODE SIZE= 3 bytes, CLOCK_SIZE= 3 clocks, STACK_SIZE= 20 bytes\n"
    "; $CALL x()\n;\n";
constexpr const char* kModuleB =
    "; Ta/rn Series C Compiler V3.70 Assembler Source\n"
    "$DGS GLV_SYM, _g, U, U, 00H, 026H, 01H, 02H\n"
    "@@CODE\tCSEG\n\tEND\n; *** Code Information ***\n;\n; $FILE C:\\p\\b.c\n;\n"
    "; $FUNC g(1)\n;\tCODE SIZE= 3 bytes, CLOCK_SIZE= 3 clocks, STACK_SIZE= 5 bytes\n;\n";
constexpr int kPatience = 10000;

}  // namespace

std::optional<std::string> PreparedDialogs::Next(const std::string& kind) {
  asked.push_back(kind);
  if (answers.empty()) {
    return std::nullopt;
  }
  std::optional<std::string> answer = answers.front();
  answers.pop_front();
  return answer;
}

MainWindow::MainWindow() {
  host.files.AddDirectory("C:\\p");
  host.files.Put(kProject, "[ProjectManager]\nPath=C:\\p\n[SrcFile]\nSource1=a.c\nSource2=b.c\n");
  host.files.Put("C:\\p\\a.asm", kModuleA);
  host.files.Put("C:\\p\\b.asm", kModuleB);
  host.files.Put("C:\\data\\ltr.txt", "# none\n");
  app = std::make_unique<CStkApp>(ApplicationParts{
      .host = host.host,
      .messages = messages,
      .boxes = boxes,
      .fileDialogs = dialogs,
      .version = {"velkor", "1.0.0 (date)"},
      .language = Language::kEnglish,
      .adjust =
          [this](UiContext&, StkFunction& function, QWidget*) {
            windows.push_back("adjust " + std::string(function.name));
            return adjustAnswer;
          },
      .functionLists = [this](UiContext&, FrameOperations&,
                              QWidget*) { windows.push_back("lists"); },
      .about = [this](UiContext&, const VersionTexts&, QWidget*) { windows.push_back("about"); },
      .showHelp = [this](int topic) { windows.push_back("help " + std::to_string(topic)); },
      .closed = [this] { ++closedCount; }});
}

MainWindow::~MainWindow() {
  Release();
  app.reset();
}

void MainWindow::Start(const std::optional<std::string>& project) {
  ASSERT_TRUE(app->Start(project));
  ASSERT_TRUE(QTest::qWaitForWindowActive(&app->Frame()));
}

bool MainWindow::WaitUntil(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, kPatience);
}

void MainWindow::HandleEvents() {
  QCoreApplication::processEvents();
  app->Posted().HandleAll();
  QCoreApplication::processEvents();
}

void MainWindow::Finish() {
  ASSERT_TRUE(WaitUntil([this] { return !HasJobs(); }));
  HandleEvents();
}

void MainWindow::BlockAnalysis() {
  host.files.OnRead("C:\\p\\b.asm", [this] {
    reached.Set();
    released.Wait();
  });
}

void MainWindow::WaitUntilBlocked() {
  ASSERT_TRUE(WaitUntil([this] { return reached.Test(); }));
  HandleEvents();
}

std::string MainWindow::Enabled() {
  std::string enabled;
  for (uint32_t number = 32771; number <= 57670; ++number) {
    const auto command = static_cast<Command>(number);
    const bool known = number <= 32787 || number == 57633 || number == 57634 || number == 57664 ||
                       number == 57665 || number == 57670;
    if (known && IsEnabled(command)) {
      enabled += (enabled.empty() ? "" : " ") + std::to_string(number);
    }
  }
  return enabled;
}

void MainWindow::Focus(QWidget& view) {
  view.setFocus();
  ASSERT_TRUE(WaitUntil([&view] { return view.hasFocus(); }));
}

StkFunction& MainWindow::Function(const std::string& cName) {
  return *Document().FunctionTable()->FindBySpecName("", cName, false);
}

std::string MainWindow::Log() {
  CStkLogView& log = app->Frame().GetLogView();
  log.ShowAll();
  return log.toPlainText().toStdString();
}

std::string MainWindow::BoxTexts() const {
  std::string texts;
  for (const auto& box : boxes.boxes) {
    texts += box.text + "|";
  }
  return texts;
}

bool MainWindow::HasJobs() const {
  const CStkDoc& document = app->Context().document;
  return document.IsAnalysing() || document.IsReadingSpecifications() ||
         document.IsWritingSpecifications() || document.IsSavingCallChains();
}

}  // namespace velkor::testing
