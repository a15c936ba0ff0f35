#pragma once

#include <cstdint>
#include <string>

#include "core/function.h"

namespace velkor::ui {

// What views and dialogs ask of the main frame for the function they have selected.
// User-interface thread.
class FrameOperations {
 public:
  virtual ~FrameOperations() = default;
  virtual void SaveCallChain(StkFunction& function, bool allChains) = 0;
  // True when the dialog ended with OK.
  virtual bool AdjustStackSize(StkFunction& function) = 0;
  virtual void ResetFunction(StkFunction& function) = 0;
  // Selects a node of the call tree that stands for the function, wherever it is.
  virtual void ShowInTree(StkFunction& function) = 0;
  // The same of one that the selected node's function calls, below that node.
  virtual void ShowCallee(StkFunction& function) = 0;
  virtual void ShowCallers(StkFunction& function) = 0;
  // Opens the file in which the function is defined.
  virtual void GoToSource(StkFunction& function) = 0;
  // path: of the analysis, in bytes of its code page. line: from 1; 0: none.
  virtual void GoToPlace(const std::string& path, uint32_t line) = 0;
  // A view's state has changed in a way that may enable or disable commands.
  virtual void UpdateCommands() = 0;
};

}  // namespace velkor::ui
