#include "ui/help/help_viewer.h"

#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <QWindow>

#include "files/paths.h"
#include "ui/commands/commands.h"
#include "ui/help/help_pages.h"
#include "ui/shown_text.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kViewerDialog = 501;
constexpr uint32_t kTitle = 0;
constexpr uint32_t kCloseViewer = 1;
// Pages of the installation, and those of the program itself.
constexpr QLatin1String kInstalled("installed");
constexpr QLatin1String kLinked("linked");
// A page is short; a file that is not one is not read whole.
constexpr size_t kMaxPageBytes = size_t{1} << 20;

QString DialogText(const StkMessages& messages, uint32_t item) {
  return ForScreen(messages.Text(static_cast<MessageKey>(kDialogTextKey * kViewerDialog + item)),
                   messages.GetCodePage());
}

QUrl PageUrl(QLatin1String scheme, const QString& path) {
  QUrl url;
  url.setScheme(scheme);
  url.setPath(path);
  return url;
}

std::optional<std::string> ReadPage(const std::string& path, FileSystem& files) {
  const OpenResult<InputFile> opened = files.OpenForRead(path);
  if (!opened.file) {
    return std::nullopt;
  }
  std::string page(std::min<size_t>(opened.file->Length(), kMaxPageBytes), '\0');
  size_t size = 0;
  while (size < page.size()) {
    const size_t count = opened.file->Read(page.data() + size, page.size() - size);
    if (count == 0) {
      break;
    }
    size += count;
  }
  page.resize(size);
  return page;
}

}  // namespace

// Finds every page, also those that a page refers to: in the folder of the language beside the
// page, else where the page is said to be, else in the program.
class HelpBrowser : public QTextBrowser {
 public:
  HelpBrowser(const Host& host, Language language, QWidget* parent)
      : QTextBrowser(parent), host_(host), language_(language) {}

  void ShowPage(const std::string& path, int topic) {
    const std::string_view name = HelpPageName(topic);
    const bool installed = !path.empty() && ReadInstalled(path).has_value();
    // Backslashes would not separate folders in the links of the page.
    const QString shown =
        installed ? ForScreen(path, host_.codePage).replace('\\', '/') : "/" + FromUtf8(name);
    setSource(PageUrl(installed ? kInstalled : kLinked, shown), QTextDocument::HtmlResource);
  }

 protected:
  QVariant loadResource(int type, const QUrl& url) override {
    if (type != QTextDocument::HtmlResource) {
      return {};
    }
    if (url.scheme() == kInstalled) {
      const std::string path = host_.codePage.FromUtf8(url.path().toStdString()).value_or("");
      if (const std::optional<std::string> page = ReadInstalled(path)) {
        return FromUtf8(*page);
      }
    }
    return FromUtf8(EmbeddedHelpPage(url.fileName().toStdString(), language_));
  }

 private:
  std::optional<std::string> ReadInstalled(const std::string& path) const {
    const CodePage& codePage = host_.codePage;
    if (language_ == Language::kJapanese) {
      std::string translated(DirectoryPart(path, codePage));
      translated += "ja/";
      translated += FileNamePart(path, codePage);
      if (auto page = ReadPage(translated, host_.files)) {
        return page;
      }
    }
    return ReadPage(path, host_.files);
  }

  const Host& host_;
  const Language language_;
};

HelpViewer::HelpViewer(const Host& host, const StkMessages& messages, HelpLocation location,
                       Language language, const QString& productName)
    : host_(host), location_(std::move(location)), browser_(new HelpBrowser(host, language, this)) {
  setWindowTitle(DialogText(messages, kTitle).replace("%s", productName));
  auto* close = new QPushButton(DialogText(messages, kCloseViewer), this);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
  // The program ends with its main window, not with its help.
  setAttribute(Qt::WA_QuitOnClose, false);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(browser_);
  layout->addWidget(close, 0, Qt::AlignRight);
  browser_->setFocus();
  const QSize wanted(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 32);
  resize(wanted.boundedTo(screen()->availableSize() * 9 / 10));
}

void HelpViewer::ShowTopic(int topic) {
  const std::string page = location_.Page(topic);
  browser_->ShowPage(page.empty() ? page : HelpPath(page, host_), topic);
  ComeForward();
}

void HelpViewer::ComeForward() {
  // A modal dialog blocks every window but those that stand in front of it.
  winId();
  QWindow* const modal = QGuiApplication::modalWindow();
  if (windowHandle()->transientParent() != modal) {
    hide();
    windowHandle()->setTransientParent(modal);
  }
  show();
  raise();
  activateWindow();
}

}  // namespace velkor::ui
