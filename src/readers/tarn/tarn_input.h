#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "messages/reporter.h"
#include "platform/host.h"
#include "readers/program_input.h"
#include "readers/tarn/accepted_compiler.h"
#include "readers/tarn/project.h"

namespace velkor {

// A project file and the assembler source modules of its C sources.
class TarnInput : public ProgramInput {
 public:
  // None after a message has been shown.
  static std::unique_ptr<TarnInput> Open(std::string_view path, Host& host, StkReporter& reporter);

  const std::string& Path() const override { return project_.Path(); }
  const StkStringList& Modules() const override { return project_.Modules(); }
  FunctionRules Rules() const override { return {.sizeLimit = kSizeLimit, .underscored = true}; }
  std::string SystemFilePath() const override { return project_.SystemFilePath(); }
  std::string_view GeneratorName() const override;
  std::string_view ModuleKindName() const override;
  std::optional<std::string> GeneratorVersion() const override;
  std::unique_ptr<ModuleReader> MakeReader() override;
  void ResolveCalls(FunctionDatabase database) override;
  StkStringList RelatedFiles() const override;
  std::vector<std::unique_ptr<StkSpecReader>> BuildSpecSources() override;
  const std::vector<StkNote>& Notes() const override { return notes_; }

 private:
  TarnInput(Host& host, StkReporter& reporter)
      : host_(host), reporter_(reporter), project_(host, reporter) {}

  Host& host_;
  StkReporter& reporter_;
  StkProject project_;
  AcceptedCompiler compiler_;
  std::vector<StkNote> notes_;
};

}  // namespace velkor
