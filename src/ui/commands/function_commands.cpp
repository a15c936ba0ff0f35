#include "ui/commands/function_commands.h"

namespace velkor::ui {

std::optional<CommandState> FunctionCommandState(Command command, const StkFunction* function,
                                                 const CStkDoc& document) {
  switch (command) {
    case Command::kSaveMaximumChain:
    case Command::kSaveAllChains:
    case Command::kAdjustStackSize:
      return CommandState{function && document.CanChangeAnalysis()};
    case Command::kResetFunction:
      return CommandState{function && document.CanChangeAnalysis() && function->adjustment};
    case Command::kShowInTree:
    case Command::kShowCallers:
      return CommandState{function && !document.BelongsToJob()};
    case Command::kGoToSource:
      return CommandState{function && !document.BelongsToJob() &&
                          (function->file || function->Place().file)};
    default:
      return std::nullopt;
  }
}

void ExecuteFunctionCommand(Command command, StkFunction* function, FrameOperations& frame) {
  if (!function) {
    return;
  }
  switch (command) {
    case Command::kSaveMaximumChain:
    case Command::kSaveAllChains:
      frame.SaveCallChain(*function, command == Command::kSaveAllChains);
      break;
    case Command::kAdjustStackSize:
      frame.AdjustStackSize(*function);
      break;
    case Command::kResetFunction:
      if (function->adjustment) {
        frame.ResetFunction(*function);
      }
      break;
    case Command::kShowInTree:
      frame.ShowInTree(*function);
      break;
    case Command::kShowCallers:
      frame.ShowCallers(*function);
      break;
    case Command::kGoToSource:
      frame.GoToSource(*function);
      break;
    default:
      break;
  }
}

}  // namespace velkor::ui
