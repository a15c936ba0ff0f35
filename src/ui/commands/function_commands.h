#pragma once

#include <optional>

#include "document/document.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"

namespace velkor::ui {

// The commands that act on one function of a view.

// None for any other command. function: what the view would act on, or none. A command that would
// change the analysis, or read it while a job changes it, is disabled while that job runs.
std::optional<CommandState> FunctionCommandState(Command command, const StkFunction* function,
                                                 const CStkDoc& document);
// Nothing happens without a function, or for any other command.
void ExecuteFunctionCommand(Command command, StkFunction* function, FrameOperations& frame);

}  // namespace velkor::ui
