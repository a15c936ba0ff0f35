#include "platform/host_locale.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "platform/code_page.h"

namespace velkor {
namespace {

class Locale {
 public:
  explicit Locale(const char* name) : before_(std::getenv("LC_ALL") ? std::getenv("LC_ALL") : "") {
    setenv("LC_ALL", name, 1);
  }
  ~Locale() { setenv("LC_ALL", before_.c_str(), 1); }

 private:
  const std::string before_;
};

TEST(HostLocaleTest, TheLocaleNamesTheSet) {
  const std::pair<const char*, std::string> cases[] = {
      {"C", "UTF-8"},          {"C.UTF-8", "UTF-8"},     {"ja_JP.SJIS", "CP932"},
      {"de_DE@euro", "UTF-8"}, {"xx_XX.bogus", "UTF-8"}, {"de_DE.ISO-8859-1@euro", "ISO-8859-1"},
      {"zh_CN.GBK", "UTF-8"}};
  for (const auto& [locale, name] : cases) {
    const Locale set(locale);
    EXPECT_EQ(CodePage::FromLocale().Name(), name) << locale;
  }
}

}  // namespace
}  // namespace velkor
