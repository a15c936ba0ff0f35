#include "platform/host_locale.h"

#include <cstdlib>
#include <langinfo.h>
#include <locale.h>

namespace velkor {
namespace {

std::string LocaleName() {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): at the start, when there is one thread
    const char* const value = std::getenv(variable);
    if (value != nullptr && *value != '\0') {
      return value;
    }
  }
  return "";
}

std::string CharacterSetOf(const std::string& localeName) {
  const size_t dot = localeName.find('.');
  if (dot != std::string::npos) {
    return localeName.substr(dot + 1, localeName.find('@', dot) - dot - 1);
  }
  if (localeName.empty() || localeName == "C" || localeName == "POSIX") {
    return "";
  }
  const locale_t locale = newlocale(LC_CTYPE_MASK, localeName.c_str(), nullptr);
  if (locale == nullptr) {
    return "";
  }
  std::string set = nl_langinfo_l(CODESET, locale);
  freelocale(locale);
  return set;
}

}  // namespace

std::string CharacterSetOfLocale() {
  return CharacterSetOf(LocaleName());
}

std::string CharacterSetOfHost() {
  return CharacterSetOfLocale();
}

}  // namespace velkor
