#include "ui/version_texts.h"

namespace velkor {

VersionTexts ProgramVersion() {
  return {"velkor", VELKOR_VERSION " (" VELKOR_RELEASE_DATE ")"};
}

}  // namespace velkor
