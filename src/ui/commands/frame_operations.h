#pragma once

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
  // A view's state has changed in a way that may enable or disable commands.
  virtual void UpdateCommands() = 0;
};

}  // namespace velkor::ui
