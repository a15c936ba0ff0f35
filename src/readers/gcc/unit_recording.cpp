#include "readers/gcc/unit_recording.h"

namespace velkor {

void UnitRecording::Clear() {
  title.clear();
  isObject = false;
  isLinkTime = false;
  hasLinkTimeCode = false;
  isWhole = true;
  hasMachine = false;
  machine = 0;
  compilerVersion.clear();
  names.Clear();
  files.Clear();
  functions.clear();
  calls.clear();
  indirectSites.clear();
  takenAddresses.clear();
  taskUses.clear();
  notes.clear();
}

}  // namespace velkor
