#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "files/spec_names.h"
#include "readers/configuration.h"
#include "readers/program_input.h"

namespace velkor {

// An input that a velkor.toml names, with what that states about it. Paths of the configuration
// are those of the host.
class ConfiguredInput : public ProgramInput {
 public:
  ConfiguredInput(std::string path, Configuration configuration,
                  std::unique_ptr<ProgramInput> input, Host& host, StkReporter& reporter);

  const std::string& Path() const override { return path_; }
  const StkStringList& Modules() const override { return input_->Modules(); }
  FunctionRules Rules() const override { return input_->Rules(); }
  size_t MostPathLength() const override { return input_->MostPathLength(); }
  // The input's own, or else NAME.psg beside NAME.toml.
  std::string SystemFilePath() const override;
  std::string_view GeneratorName() const override { return input_->GeneratorName(); }
  std::string_view ModuleKindName() const override { return input_->ModuleKindName(); }
  std::optional<std::string> GeneratorVersion() const override {
    return input_->GeneratorVersion();
  }
  std::unique_ptr<ModuleReader> MakeReader() override { return input_->MakeReader(); }
  void ResolveCalls(FunctionDatabase database) override;
  const ProgramFacts& Facts() const override { return input_->Facts(); }
  const Configuration* Settings() const override { return &configuration_; }
  const std::vector<StkNote>& Notes() const override { return input_->Notes(); }
  // What the input relates to, the linked program and what the configuration loads.
  StkStringList RelatedFiles() const override;
  // Those of the input, the stk system file and then what the configuration loads, which wins.
  std::vector<std::unique_ptr<StkSpecReader>> BuildSpecSources() override;

 private:
  void BringTotal(const Configuration::Call& call, StkFunctionTable& functions, SpecNames& names);
  void PostNoteOfCall(const Configuration::Call& call, MessageKey text, std::string_view name);

  const std::string path_;
  const Configuration configuration_;
  const std::unique_ptr<ProgramInput> input_;
  Host& host_;
  StkReporter& reporter_;
};

// A path that a file of the host states, from the folder of that file.
std::string PathBeside(std::string_view file, std::string_view path, const CodePage& codePage);

}  // namespace velkor
