#include "readers/open_input.h"

#include <utility>

#include "files/whole_text.h"
#include "readers/configured_input.h"
#include "readers/gcc/gcc_input.h"
#include "readers/tarn/tarn_input.h"

namespace velkor {
namespace {

constexpr uint64_t kMostConfigurationBytes = 16 << 20;

// None after a message.
std::optional<Configuration> ReadConfigurationFile(std::string_view path, Host& host,
                                                   StkReporter& reporter) {
  const std::optional<std::string> text =
      ReadWholeText(host.files, path, kMostConfigurationBytes);
  if (!text) {
    reporter.ShowFatal(MessageKey::kE9300, {MessageFile{path}});
    return std::nullopt;
  }
  ReadConfigurationResult result = ReadConfiguration(*text);
  for (const ConfigurationFault& fault : result.faults) {
    reporter.ShowFatal(MessageKey::kE9303, {MessageFile{path}, MessageLine{fault.place.line},
                                            fault.place.column, std::string_view(fault.text)});
  }
  return std::move(result.configuration);
}

bool IsProject(std::string_view path) {
  return path.ends_with(".prj") || path.ends_with(".PRJ");
}

std::unique_ptr<ProgramInput> OpenConfigured(std::string_view path, Host& host,
                                             StkReporter& reporter) {
  std::optional<Configuration> configuration = ReadConfigurationFile(path, host, reporter);
  if (!configuration) {
    return nullptr;
  }
  std::unique_ptr<ProgramInput> input;
  if (configuration->input.size() == 1 && IsProject(configuration->input.front())) {
    input = TarnInput::Open(PathBeside(path, configuration->input.front(), host.codePage), host, reporter);
  } else {
    GccSettings settings;
    for (const std::string& folder : configuration->input) {
      settings.folders.push_back(PathBeside(path, folder, host.codePage));
    }
    settings.exclude = configuration->exclude;
    settings.elf = configuration->elf.empty() ? "" : PathBeside(path, configuration->elf, host.codePage);
    settings.vectors = configuration->vectors;
    for (const Configuration::Call& call : configuration->calls) {
      if (!call.table.empty()) {
        settings.tables.push_back({call.function.text, call.table, call.function.place});
      }
    }
    input = GccInput::Open(path, std::move(settings), host, reporter);
  }
  if (input == nullptr) {
    return nullptr;
  }
  return std::make_unique<ConfiguredInput>(std::string(path), *std::move(configuration),
                                           std::move(input), host, reporter);
}

}  // namespace

std::unique_ptr<ProgramInput> OpenInput(std::string_view path, Host& host, StkReporter& reporter) {
  if (path.ends_with(".toml")) {
    return OpenConfigured(path, host, reporter);
  }
  if (!IsProject(path) && host.files.IsDirectory(path)) {
    return GccInput::Open(
        path,
        {.folders = {std::string(path)}, .exclude = {}, .elf = {}, .vectors = {}, .tables = {}},
        host, reporter);
  }
  return TarnInput::Open(path, host, reporter);
}

}  // namespace velkor
