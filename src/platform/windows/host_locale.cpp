#include "platform/host_locale.h"

#include <windows.h>

namespace velkor {

std::string CharacterSetOfLocale() {
  return std::to_string(GetACP());
}

// See wide_text.h.
std::string CharacterSetOfHost() {
  return "UTF-8";
}

}  // namespace velkor
