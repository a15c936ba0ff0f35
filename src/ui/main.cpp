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
#include "ui/dialogs/legend.h"
#include "ui/dialogs/options_dialog.h"
#include "ui/help/help_viewer.h"
#include "ui/shown_text.h"
#include "ui/source_opener.h"
#include "ui/window_options.h"
#include "ui/window_settings.h"

namespace velkor::embedded {
extern const std::string_view commit;
}

namespace velkor::ui {
namespace {

// Of one run of the event loop: what to read, and how.
struct Reading {
  MachineOptions machine;
  std::optional<std::string> project;  // a path of that machine
};

// The options of the command line with what the user has said about one input: the command line is
// the stronger.
MachineOptions OptionsFor(const MachineOptions& given, const ProjectSettings& project) {
  MachineOptions options = given;
  if (!options.codePage && !project.codePage.isEmpty()) {
    options.codePage = project.codePage.toLocal8Bit().toStdString();
  }
  if (options.mappings.empty()) {
    for (const QString& mapping : project.mappings) {
      options.mappings.push_back(mapping.toLocal8Bit().toStdString());
    }
  }
  std::string error;
  return LocalMachine::Create(options, error) ? options : given;
}

// The application with the real windows. The toolkit's application object outlives it.
class Program {
 public:
  // given: the options of the command line.
  Program(LocalMachine& machine, MachineOptions options, MachineOptions given,
          WindowSettings& settings)
      : options_(std::move(options)),
        given_(std::move(given)),
        settings_(settings),
        messages_(WindowMessages(machine.GetHost().codePage, language_)),
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
  // What is to be run once this has ended.
  const std::optional<Reading>& Next() const { return next_; }

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
            .closed = [] { QCoreApplication::exit(0); },
            .settings = settings_,
            .legend = [](UiContext& context,
                         QWidget* parent) { (new Legend(context, parent))->show(); },
            .options = [this](UiContext& context,
                              QWidget* parent) { return AskOptions(context, parent); },
            .openSource =
                [this](UiContext& context, const std::string& path, uint32_t line) {
                  return OpenSource(context, settings_.Editor(), path, line);
                },
            .readsOtherwise =
                [this](UiContext& context, const std::string& path) {
                  return ReadsOtherwise(context, path);
                },
            .staysOpen = [this] { next_.reset(); }};
  }

  AdjustAnswer Adjust(UiContext& context, StkFunction& function, QWidget* parent) {
    AdjustStackSizeDialog dialog(context, function, ShowHelp(), parent);
    if (dialog.exec() != QDialog::Accepted) {
      return {};
    }
    return {true, dialog.BuildAdjustment()};
  }

  bool AskOptions(UiContext& context, QWidget* parent) {
    const QString path = context.Decoded(context.document.PathName());
    const ProjectSettings before = settings_.Project(path);
    OptionsDialog dialog(context, !path.isEmpty(), before, settings_.Editor(), parent);
    if (dialog.exec() != QDialog::Accepted) {
      return false;
    }
    settings_.SetEditor(dialog.Editor());
    if (path.isEmpty() || dialog.Project() == before) {
      return false;
    }
    settings_.SetProject(path, dialog.Project());
    return true;
  }

  bool ReadsOtherwise(UiContext& context, const std::string& path) {
    MachineOptions wanted = OptionsFor(given_, settings_.Project(context.Decoded(path)));
    if (wanted.codePage == options_.codePage && wanted.mappings == options_.mappings) {
      return false;
    }
    next_ = {std::move(wanted), path};
    return true;
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

  const MachineOptions options_;
  const MachineOptions given_;
  WindowSettings& settings_;
  std::optional<Reading> next_;
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

// The first input, as its settings say that it is to be read.
Reading FirstReading(const WindowOptions& options, const LocalMachine& machine,
                     const WindowSettings& settings) {
  if (!options.project) {
    return {options.machine, std::nullopt};
  }
  std::string path = machine.AbsolutePath(*options.project);
  const CodePage& codePage = machine.GetCodePage();
  return {OptionsFor(options.machine, settings.Project(ForScreen(path, codePage))), path};
}

// Another machine's texts of the same path.
std::string PathFor(const LocalMachine& machine, const CodePage& before, const std::string& path) {
  return machine.GetCodePage().FromUtf8(before.ToUtf8(path)).value_or(path);
}

int RunAll(LocalMachine& first, const WindowOptions& options, WindowSettings& settings) {
  Reading reading = FirstReading(options, first, settings);
  const LocalMachine* before = &first;
  std::unique_ptr<LocalMachine> machine;
  while (true) {
    std::string error;
    std::unique_ptr<LocalMachine> next = LocalMachine::Create(reading.machine, error);
    if (reading.project) {
      reading.project = PathFor(*next, before->GetCodePage(), *reading.project);
    }
    machine = std::move(next);
    before = machine.get();
    Program program(*machine, reading.machine, options.machine, settings);
    const int status = program.Run(reading.project);
    if (!program.Next()) {
      return status;
    }
    reading = *program.Next();
  }
}

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
  WindowSettings settings =
      arguments.options->settings ? WindowSettings::OfUser() : WindowSettings();
  return RunAll(*machine, *arguments.options, settings);
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
