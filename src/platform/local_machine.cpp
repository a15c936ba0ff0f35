#include "platform/local_machine.h"

#include <utility>

#include "platform/host_program.h"

namespace velkor {

std::unique_ptr<LocalMachine> LocalMachine::Create(const MachineOptions& options,
                                                   std::string& error) {
  std::optional<CodePage> codePage =
      options.codePage ? CodePage::FromName(*options.codePage) : CodePage::FromLocale();
  if (!codePage) {
    error = "--codepage: unknown code page " + *options.codePage;
    return nullptr;
  }
  std::unique_ptr<LocalMachine> machine(new LocalMachine(*std::move(codePage), options));
  return machine->AddMappings(options, error) ? std::move(machine) : nullptr;
}

LocalMachine::LocalMachine(CodePage codePage, const MachineOptions& options)
    : codePage_(std::move(codePage)),
      host_{codePage_, files_, paths_, resources_,
            options.dataFolder.empty() ? "" : AbsolutePath(options.dataFolder)} {}

bool LocalMachine::AddMappings(const MachineOptions& options, std::string& error) {
  const std::string environment = EnvironmentVariable("VELKOR_MAP");
  if (!paths_.AddMappings(environment)) {
    error = "VELKOR_MAP: not of the form C:\\work=/home/me/work;...: " + environment;
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
