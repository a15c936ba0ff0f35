#include "main_window.h"

#include <QTest>
#include <QTextDocument>
#include <QTimer>
#include <chrono>
#include <thread>

#include "core/adjustments.h"
#include "support/module_text.h"

namespace velkor::ui {

namespace {

constexpr int kPatience = 60000;

// The one application object of the test program. The toolkit does not survive one that goes with
// the static objects.
class QtEnvironment : public ::testing::Environment {
 public:
  void TearDown() override { application_.reset(); }

 private:
  int count_ = 1;
  char name_[8] = "ui_test";
  char* arguments_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> application_ = std::make_unique<QApplication>(count_, arguments_);
};

[[maybe_unused]] const auto* const kEnvironment =
    ::testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace

std::optional<std::string> PreparedDialogs::Next() {
  if (answers.empty()) {
    return std::nullopt;
  }
  std::optional<std::string> answer = answers.front();
  answers.pop_front();
  return answer;
}

MainWindow::MainWindow(const std::vector<std::string>& functions, Language language)
    : messages(WindowMessages(host.codePage, language)), language_(language) {
  host.files.AddDirectory("C:\\p");
  host.files.Put(kProject, "[ProjectManager]\nPath=C:\\p\n[SrcFile]\nSource1=a.c\nSource2=b.c\n");
  host.files.Put("C:\\p\\a.asm", testing::ModuleText("a.c", functions));
  host.files.Put(kModuleB, testing::ModuleText("b.c", {"g 5"}));
  host.files.Put("C:\\data\\ltr.txt", "# none\n");
  MakeApp();
}

void MainWindow::MakeApp() {
  app.reset();
  app = std::make_unique<CStkApp>(
      ApplicationParts{.host = host.host,
                       .messages = messages,
                       .boxes = boxes,
                       .fileDialogs = dialogs,
                       .posted = posted,
                       .version = {"velkor", "1.0.0 (date)"},
                       .language = language_,
                       .adjust =
                           [this](UiContext&, StkFunction& function, QWidget*) {
                             adjusted.emplace_back(function.name);
                             return adjustAnswer;
                           },
                       .functionLists = [](UiContext&, FrameOperations&, QWidget*) {},
                       .about = [](UiContext&, const VersionTexts&, QWidget*) {},
                       .showHelp = [](int) {},
                       .closed = [this] { ++closedCount; },
                       .settings = settings,
                       .legend = [](UiContext&, QWidget*) {},
                       .options = [](UiContext&, QWidget*) { return false; },
                       .openSource =
                           [this](UiContext&, const std::string& path, uint32_t line) {
                             opened.push_back(path + ":" + std::to_string(line));
                             return true;
                           },
                       .readsOtherwise = [](UiContext&, const std::string&) { return false; },
                       .staysOpen = [] {}});
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
  posted.HandleAll();
  QCoreApplication::processEvents();
}

void MainWindow::Finish() {
  ASSERT_TRUE(WaitUntil([this] { return !HasJobs(); }));
  HandleEvents();
}

void MainWindow::BlockAt(const std::string& path) {
  host.files.OnRead(path, [this] {
    reached.Set();
    released.Wait();
  });
}

void MainWindow::WaitUntilBlocked() {
  ASSERT_TRUE(WaitUntil([this] { return reached.Test(); }));
  HandleEvents();
}

void MainWindow::ChooseWhileBlocked(Command command) {
  std::thread later([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    Release();
  });
  Choose(command);
  later.join();
}

StkFunction& MainWindow::Function(const std::string& cName) {
  return *Document().FunctionTable()->FindBySpecName("", cName, false);
}

std::string MainWindow::Log() {
  ShowWholeLog();
  return app->Frame().GetLogView().toPlainText().toStdString();
}

// The log goes on in its own time as long as each turn of the event loop changes it.
void MainWindow::ShowWholeLog() {
  const QTextDocument& text = *app->Frame().GetLogView().document();
  for (int before = -1; before != text.revision();) {
    before = text.revision();
    QTimer turn;
    turn.setSingleShot(true);
    turn.start(0);
    ASSERT_TRUE(WaitUntil([&turn] { return !turn.isActive(); }));
  }
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
  return document.HasJobs();
}

std::string MainWindow::TreeText() {
  std::string text;
  for (QModelIndex index = Tree().model()->index(0, 0); index.isValid();
       index = Tree().indexBelow(index)) {
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
      text += "  ";
    }
    text += index.data().toString().toStdString();
    text += Tree().selectionModel()->isSelected(index) ? " <\n" : "\n";
  }
  return text;
}

std::string MainWindow::ListText() {
  std::string names;
  for (int row = 0; row < List().model()->rowCount(); ++row) {
    names += List().model()->index(row, 0).data().toString().toStdString() + " ";
  }
  return names;
}

QModelIndex MainWindow::Node(const QString& name, int occurrence) {
  QModelIndex index = Tree().model()->index(0, 0);
  while (index.isValid() && (index.data().toString() != name || occurrence-- > 0)) {
    index = Tree().indexBelow(index);
  }
  EXPECT_TRUE(index.isValid()) << name.toStdString();
  return index;
}

void MainWindow::Click(const QModelIndex& node) {
  QTest::mouseClick(Tree().viewport(), Qt::LeftButton, Qt::NoModifier,
                    Tree().visualRect(node).center());
}

std::string MainWindow::RowsOf(const FunctionListBox& rows) {
  std::string text;
  for (int row = 0; row < rows.model()->rowCount(); ++row) {
    const QModelIndex index = rows.model()->index(row, 0);
    text += index.data().toString().toStdString();
    text += rows.selectionModel()->isSelected(index) ? " <\n" : "\n";
  }
  return text;
}

void MainWindow::Select(FunctionListBox& rows, int row) {
  const QPoint point = rows.visualRect(rows.model()->index(row, 0)).center();
  QTest::mouseClick(rows.viewport(), Qt::LeftButton, Qt::NoModifier, {10, point.y()});
}

QPushButton& MainWindow::Button(QWidget& dialog, const QString& text) {
  for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
    if (button->text().remove('&') == text) {
      return *button;
    }
  }
  ADD_FAILURE() << text.toStdString();
  return *dialog.findChild<QPushButton*>();
}

}  // namespace velkor::ui
