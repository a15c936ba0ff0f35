#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <cstdio>
#include <exception>
#include <string_view>

#include "messages/product_version.h"
#include "platform/local_machine.h"
#include "platform/terminal.h"
#include "ui/application.h"
#include "ui/commands/toolbar_icons.h"
#include "ui/dialogs/about_box.h"
#include "ui/dialogs/adjust_dialog.h"
#include "ui/dialogs/function_lists_dialog.h"
#include "ui/help/help_viewer.h"
#include "ui/window_options.h"

namespace velkor::embedded {
extern const std::string_view commit;
}

namespace velkor::ui {
namespace {

// The application with the real windows. The toolkit's application object outlives it.
class Program {
 public:
  explicit Program(LocalMachine& machine)
      : messages_(WindowMessages(machine.GetHost().codePage, language_)),
        help_(machine.GetHost(), messages_,
              FindHelp(InstallationSettings(machine.GetHost()), version_.versionSource), language_,
              QString::fromStdString(version_.productName)),
        application_(MakeParts(machine.GetHost())) {
    QApplication::setWindowIcon(ProgramIcon());
    boxes_.SetMainWindow(&application_.Frame());
    TranslateToolkit();
  }

  int Run(const std::optional<std::string>& project) {
    return application_.Start(project) ? QApplication::exec() : kWindowProjectNotRead;
  }

 private:
  ApplicationParts MakeParts(Host& host) {
    return {.host = host,
            .messages = messages_,
            .boxes = boxes_,
            .fileDialogs = fileDialogs_,
            .posted = posted_,
            .version = version_,
            .language = language_,
            .adjust = [this](UiContext& context, StkFunction& function,
                             QWidget* parent) { return Adjust(context, function, parent); },
            .functionLists =
                [this](UiContext& context, FrameOperations& frame, QWidget* parent) {
                  FunctionListsDialog(context, frame, ShowHelp(), parent).exec();
                },
            .about = [](UiContext& context, const VersionTexts& version,
                        QWidget* parent) { AboutBox(context, version, parent).exec(); },
            .showHelp = ShowHelp(),
            .closed = [] { QCoreApplication::exit(0); }};
  }

  AdjustAnswer Adjust(UiContext& context, StkFunction& function, QWidget* parent) {
    AdjustStackSizeDialog dialog(context, function, ShowHelp(), parent);
    if (dialog.exec() != QDialog::Accepted) {
      return {};
    }
    return {true, dialog.BuildAdjustment()};
  }

  std::function<void(int topic)> ShowHelp() {
    return [this](int topic) { help_.ShowTopic(topic); };
  }

  // The toolkit's own texts, as in the file dialogs.
  void TranslateToolkit() {
    if (language_ == Language::kJapanese &&
        translator_.load("qtbase_ja", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
      QCoreApplication::installTranslator(&translator_);
    }
  }

  const Language language_ = UserLanguage();
  const VersionTexts version_ = ProgramVersion();
  const StkMessages messages_;
  QTranslator translator_;
  WindowBoxes boxes_{messages_, version_.productName};
  WindowFileDialogs fileDialogs_;
  HelpViewer help_;
  NotificationQueue posted_;
  CStkApp application_;
};

int Run(int argc, char** argv) {
  if (AskOnlyForText(argc, argv)) {
    return ParseWindowArguments(argc, argv, VersionLine(embedded::commit)).status;
  }
  // Takes the toolkit's own options away.
  QApplication toolkit(argc, argv);
  QApplication::setApplicationName("velkor");
  QApplication::setQuitOnLastWindowClosed(false);
  const WindowArguments arguments = ParseWindowArguments(argc, argv, VersionLine(embedded::commit));
  if (!arguments.options) {
    return arguments.status;
  }
  std::string error;
  const auto machine = LocalMachine::Create(arguments.options->machine, error);
  if (machine == nullptr) {
    std::fprintf(stderr, "velkor: %s\n", error.c_str());
    return kWindowWrongUsage;
  }
  std::optional<std::string> project = arguments.options->project;
  if (project) {
    project = machine->AbsolutePath(*project);
  }
  return Program(*machine).Run(project);
}

}  // namespace
}  // namespace velkor::ui

int main(int argc, char** argv) {
  velkor::PrepareStandardStreams();
  try {
    return velkor::ui::Run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "velkor: %s\n", failure.what());
    return 1;
  }
}
