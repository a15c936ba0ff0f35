#include "ui/frame_commands.h"

#include "ui/help/help_location.h"
#include "ui/page_report.h"
#include "ui/wait_cursor.h"

namespace velkor::ui {

namespace {

constexpr auto kDiscardQuestion = static_cast<MessageKey>(kDialogTextKey * 500 + 1009);

}  // namespace

FrameCommands::FrameCommands(UiContext& context, NotificationQueue& posted, FrameParts& parts,
                             StkJobMonitor& monitor, QWidget& window)
    : context_(context), posted_(posted), parts_(parts), monitor_(monitor), window_(window) {}

std::optional<CommandState> FrameCommands::StateOf(Command command) {
  CStkDoc& document = context_.document;
  const bool readable = HasReadableFunctions(document);
  const uint32_t adjusted = readable ? document.FunctionTable()->AdjustedCount() : 0;
  switch (command) {
    case Command::kLoadSpecFile:
      return CommandState{readable && document.CanChangeAnalysis()};
    case Command::kSaveSpecFile:
      return CommandState{readable &&
                          (adjusted != 0 || document.FunctionTable()->UnknownCount() != 0)};
    case Command::kSavePage:
    case Command::kFunctionLists:
      return CommandState{readable};
    case Command::kResetAllFunctions:
      return CommandState{adjusted != 0 && document.CanChangeAnalysis()};
    case Command::kRecalculate:
      return CommandState{!document.PathName().empty()};
    case Command::kStop:
      return CommandState{monitor_.CanStop()};
    case Command::kHelp:
      return CommandState{true};
    default:
      return std::nullopt;
  }
}

void FrameCommands::Execute(Command command) {
  switch (command) {
    case Command::kLoadSpecFile:
      return LoadSpecFile();
    case Command::kSaveSpecFile:
      return SaveSpecFile();
    case Command::kSavePage:
      return SavePage();
    case Command::kFunctionLists:
      parts_.functionLists(&window_);
      return;
    case Command::kResetAllFunctions:
      return ResetAllFunctions();
    case Command::kRecalculate:
      return Recalculate();
    case Command::kStop:
      return Stop();
    case Command::kHelp:
      parts_.showHelp(kMainWindowHelp);
      return;
    default:
      return;
  }
}

void FrameCommands::LoadSpecFile() {
  if (!context_.document.CanKeepAdjustments()) {
    return;
  }
  if (const auto path = parts_.fileDialogs.SpecFileToLoad(context_, &window_)) {
    context_.document.LoadSpecFile(*path);
  }
}

void FrameCommands::SaveSpecFile() {
  if (const auto path = parts_.fileDialogs.SpecFileToSave(context_, &window_)) {
    const WaitCursor waiting;
    context_.document.SaveSpecFile(*path);
  }
}

void FrameCommands::SavePage() {
  if (const auto path = parts_.fileDialogs.PageToSave(context_, &window_)) {
    const WaitCursor waiting;
    WritePageReport(context_, *path);
  }
}

void FrameCommands::ResetAllFunctions() {
  if (context_.reporter.AskYesNo(MessageKey::kI9503, {})) {
    const WaitCursor waiting;
    context_.document.CancelAllAdjustments();
  }
}

void FrameCommands::Recalculate() {
  if (!MayDiscardAnalysis()) {
    return;
  }
  const WaitCursor waiting;
  context_.document.Recalculate();
}

void FrameCommands::Stop() {
  if (monitor_.CanStop()) {
    const WaitCursor waiting;
    monitor_.Stop();
  }
}

bool FrameCommands::MayDiscardAnalysis() {
  {
    const WaitCursor waiting;
    if (context_.document.SettleSystemSave()) {
      return true;
    }
  }
  posted_.HandleAll();  // why it has failed
  return context_.reporter.AskYesNo(kDiscardQuestion,
                                    {MessageFile{context_.document.Input()->SystemFilePath()}});
}

bool HasReadableFunctions(CStkDoc& document) {
  const StkFunctionTable* functions = document.FunctionTable();
  return functions && functions->Count() > 0;
}

}  // namespace velkor::ui
