#include "ui/window_host.h"

#include <cstdlib>

namespace velkor {

std::unique_ptr<WindowHost> WindowHost::Create(const WindowOptions& options, std::string& error) {
  std::optional<CodePage> codePage =
      options.codePage ? CodePage::FromName(*options.codePage) : CodePage::FromLocale();
  if (!codePage) {
    error = "--codepage: unknown code page " + *options.codePage;
    return nullptr;
  }
  std::unique_ptr<WindowHost> host(new WindowHost(*std::move(codePage), options));
  return host->AddMappings(options, error) ? std::move(host) : nullptr;
}

WindowHost::WindowHost(CodePage codePage, const WindowOptions& options)
    : codePage_(std::move(codePage)),
      host_{codePage_, files_, paths_, resources_,
            options.dataFolder.empty() ? "" : AbsolutePath(options.dataFolder)} {}

std::string WindowHost::AbsolutePath(const std::string& path) const {
  return paths_.FullPathName(path).value_or(path);
}

bool WindowHost::AddMappings(const WindowOptions& options, std::string& error) {
  const char* environment = std::getenv("VELKOR_MAP");
  if (environment != nullptr && *environment != '\0' && !paths_.AddMappings(environment)) {
    error = std::string("VELKOR_MAP: not of the form C:\\work=/home/me/work;...: ") + environment;
    return false;
  }
  for (const std::string& mapping : options.mappings) {
    if (!paths_.AddMapping(mapping)) {
      error = "--map: not of the form C:\\work=/home/me/work: " + mapping;
      return false;
    }
  }
  return true;
}

}  // namespace velkor
