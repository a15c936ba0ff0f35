#include "core/function_text.h"
#include "files/chain_report.h"
#include "ui/commands/context_menu.h"
#include "ui/help/help_location.h"
#include "ui/main_frame.h"
#include "ui/wait_cursor.h"

namespace velkor::ui {

void CMainFrame::UpdateCommands() {
  if (activeView_) {
    actions_.Update([this](Command command) { return RoutedState(command); });
  }
}

std::vector<CommandTarget*> CMainFrame::Targets(Command command) {
  std::vector<CommandTarget*> targets;
  if (std::ranges::find(kSortCommands, command) != std::end(kSortCommands)) {
    targets.push_back(listView_);
  }
  targets.insert(targets.end(), {activeView_, this, &parts_.application});
  return targets;
}

CommandState CMainFrame::RoutedState(Command command) {
  for (CommandTarget* target : Targets(command)) {
    if (const std::optional<CommandState> state = target->StateOf(command)) {
      return *state;
    }
  }
  return {};
}

void CMainFrame::Route(Command command) {
  for (CommandTarget* target : Targets(command)) {
    const std::optional<CommandState> state = target->StateOf(command);
    if (!state) {
      continue;
    }
    if (state->enabled) {
      target->Execute(command);
    }
    break;
  }
  UpdateCommands();
}

// There are functions, and no job is changing them in its thread.
bool CMainFrame::HasReadableFunctions() const {
  const StkFunctionTable* functions = context_.document.FunctionTable();
  return functions && functions->Count() > 0;
}

std::optional<CommandState> CMainFrame::StateOf(Command command) {
  CStkDoc& document = context_.document;
  const bool readable = HasReadableFunctions();
  const uint32_t adjusted = readable ? document.FunctionTable()->AdjustedCount() : 0;
  switch (command) {
    case Command::kLoadSpecFile:
      return CommandState{readable && document.CanChangeAnalysis()};
    case Command::kSaveSpecFile:
      return CommandState{readable &&
                          (adjusted != 0 || document.FunctionTable()->UnknownCount() != 0)};
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

void CMainFrame::Execute(Command command) {
  switch (command) {
    case Command::kLoadSpecFile:
      return LoadSpecFile();
    case Command::kSaveSpecFile:
      return SaveSpecFile();
    case Command::kFunctionLists:
      parts_.functionLists(this);
      return;
    case Command::kResetAllFunctions:
      return ResetAllFunctions();
    case Command::kRecalculate: {
      const WaitCursor waiting;
      context_.document.Recalculate();
      return;
    }
    case Command::kStop:
      return Stop();
    case Command::kHelp:
      parts_.showHelp(kMainWindowHelp);
      return;
    default:
      return;
  }
}

void CMainFrame::LoadSpecFile() {
  if (const auto path = parts_.fileDialogs.SpecFileToLoad(context_, this)) {
    context_.document.LoadSpecFile(*path);
  }
}

void CMainFrame::SaveSpecFile() {
  if (const auto path = parts_.fileDialogs.SpecFileToSave(context_, this)) {
    const WaitCursor waiting;
    context_.document.SaveSpecFile(*path);
  }
}

void CMainFrame::ResetAllFunctions() {
  if (context_.reporter.AskYesNo(MessageKey::kI9503, {})) {
    const WaitCursor waiting;
    context_.document.CancelAllAdjustments();
  }
}

void CMainFrame::Stop() {
  if (monitor_.CanStop()) {
    const WaitCursor waiting;
    monitor_.Stop();
    UpdateCommands();
  }
}

void CMainFrame::SaveCallChain(StkFunction& function, bool allChains) {
  const auto path = parts_.fileDialogs.ReportToSave(context_, DialogParent());
  if (path && HasReadableFunctions()) {
    const WaitCursor waiting;
    context_.document.SaveCallChains(*path, function, allChains,
                                     StkChainReport::FormatOf(*path, context_.host.codePage));
    UpdateCommands();
  }
}

bool CMainFrame::AdjustStackSize(StkFunction& function) {
  CStkDoc& document = context_.document;
  if (!document.FunctionTable() || !document.CanChangeAnalysis()) {
    return false;
  }
  const AdjustAnswer answer = parts_.adjust(function, DialogParent());
  if (!answer.accepted) {
    return false;
  }
  const WaitCursor waiting;
  if (answer.adjustment) {
    document.AdjustFunction(function, *answer.adjustment);
  } else if (function.adjustment) {
    document.CancelAdjustment(function);
  }
  UpdateCommands();
  return true;
}

void CMainFrame::ResetFunction(StkFunction& function) {
  CStkDoc& document = context_.document;
  if (!document.FunctionTable() || !document.CanChangeAnalysis() || !function.adjustment) {
    return;
  }
  const std::string name = FunctionSpecName(function, context_.host.codePage);
  if (context_.reporter.AskYesNo(MessageKey::kI9502, {name})) {
    const WaitCursor waiting;
    document.CancelAdjustment(function);
    UpdateCommands();
  }
}

}  // namespace velkor::ui
