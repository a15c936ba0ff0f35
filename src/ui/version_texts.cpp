#include "ui/version_texts.h"

namespace velkor::ui {

VersionTexts ProgramVersion() {
  // The day of the release of that version.
  return {"velkor", VELKOR_VERSION " (2026-11-24)"};
}

}  // namespace velkor::ui
