#include "readers/tarn/module_recording.h"

namespace velkor {

// Keeps the memory for the next module.
void ModuleRecording::Clear() {
  family.clear();
  version = 0;
  sourceFile.clear();
  events.clear();
  functions.clear();
  helpers.clear();
  hiddenCalls.clear();
  names.Clear();
  helperNames.Clear();
  end = End::kWhole;
  lastLine = 0;
  lack = Lack::kNothing;
  lackLine = 0;
  lackName = 0;
  endsInRecord = false;
}

}  // namespace velkor
