#include "ui/application.h"

#include "ui/dialogs/file_name_checks.h"
#include "ui/wait_cursor.h"

namespace velkor::ui {

CStkApp::CStkApp(ApplicationParts parts)
    : parts_(std::move(parts)),
      boxes_(parts_.boxes, parts_.posted),
      reporter_(parts_.messages, boxes_, [this] { parts_.posted.PostRequest(); }),
      document_(parts_.host, reporter_, parts_.posted),
      context_{parts_.host, parts_.messages, reporter_, document_},
      frame_(context_, parts_.posted, MakeFrameParts()) {
  reporter_.SetCloseRequest([this] {
    QMetaObject::invokeMethod(
        &frame_, [this] { frame_.close(); }, Qt::QueuedConnection);
  });
}

FrameParts CStkApp::MakeFrameParts() {
  return {
      .application = *this,
      .fileDialogs = parts_.fileDialogs,
      .productName = parts_.version.productName,
      .language = parts_.language,
      .adjust = [this](StkFunction& function,
                       QWidget* parent) { return parts_.adjust(context_, function, parent); },
      .functionLists = [this](QWidget* parent) { parts_.functionLists(context_, frame_, parent); },
      .showHelp = parts_.showHelp,
      .openProject = [this](const QString& path) { OpenDropped(path); },
      .settings = parts_.settings,
      .legend = [this](QWidget* parent) { parts_.legend(context_, parent); },
      .options = [this](QWidget* parent) { ShowOptions(parent); },
      .openSource = [this](const std::string& path,
                           uint32_t line) { return parts_.openSource(context_, path, line); },
      .closed = parts_.closed};
}

bool CStkApp::Start(const std::optional<std::string>& project) {
  if (project) {
    reporter_.SetOpenedFromCommandLine(true);
    if (!OpenDocumentFile(*project)) {
      return false;
    }
  }
  frame_.show();
  return true;
}

bool CStkApp::OpenDocumentFile(std::string_view path) {
  const WaitCursor waiting;
  const bool opened = document_.OnOpenDocument(path);
  if (opened) {
    document_.StartAnalysis();
    parts_.settings.AddRecent(context_.Decoded(path));
  }
  frame_.DocumentChanged();
  return opened;
}

std::optional<CommandState> CStkApp::StateOf(Command command) {
  switch (command) {
    case Command::kOpenProject:
    case Command::kOpenFolder:
    case Command::kExit:
    case Command::kAbout:
      return CommandState{true};
    default:
      return std::nullopt;
  }
}

void CStkApp::Execute(Command command) {
  switch (command) {
    case Command::kOpenProject:
      return OpenChosen(&FileDialogs::ProjectToOpen);
    case Command::kOpenFolder:
      return OpenChosen(&FileDialogs::FolderToOpen);
    case Command::kExit:
      frame_.close();
      return;
    case Command::kAbout:
      parts_.about(context_, parts_.version, &frame_);
      return;
    default:
      return;
  }
}

void CStkApp::OpenChosen(ChoosePath choose) {
  reporter_.SetOpenedFromCommandLine(false);
  const auto path = (parts_.fileDialogs.*choose)(context_, &frame_);
  if (path) {
    Open(*path);
  }
}

void CStkApp::OpenDropped(const QString& path) {
  reporter_.SetOpenedFromCommandLine(false);
  const auto name = NameToOpen(path, context_);
  if (name) {
    Open(*name);
  }
}

void CStkApp::Open(const std::string& path) {
  if (!frame_.MayDiscardAnalysis()) {
    return;
  }
  if (parts_.readsOtherwise(context_, path)) {
    if (!frame_.close()) {
      parts_.staysOpen();
    }
  } else {
    OpenDocumentFile(path);
  }
}

void CStkApp::ShowOptions(QWidget* parent) {
  if (parts_.options(context_, parent)) {
    Open(document_.PathName());
  }
}

}  // namespace velkor::ui
