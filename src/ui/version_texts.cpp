#include "ui/version_texts.h"

namespace velkor::ui {

VersionTexts ProgramVersion() {
  return {"velkor", VELKOR_VERSION " (" VELKOR_RELEASE_DATE ")"};
}

}  // namespace velkor::ui
