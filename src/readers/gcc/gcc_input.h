#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "messages/reporter.h"
#include "platform/host.h"
#include "readers/gcc/folder_search.h"
#include "readers/gcc/gcc_module_reader.h"
#include "readers/gcc/path_pattern.h"
#include "readers/gcc/program_ahead.h"
#include "readers/gcc/program_link.h"
#include "readers/gcc/table_call.h"
#include "readers/program_input.h"

namespace velkor {

// What is to be read of a build of GCC. Paths of the host.
struct GccSettings {
  std::vector<std::string> folders;
  std::vector<std::string> exclude;
  std::string elf;      // the linked program; empty: none
  std::string vectors;  // the symbol of its vector table; empty: to be found
  std::vector<TableCall> tables;
};

// Folders with the call graph files that GCC writes, each beside its object. A module is a call
// graph file. Keeps no adjustments.
class GccInput : public ProgramInput, private GccUnits {
 public:
  // path: what the user opened. None after a message has been shown.
  static std::unique_ptr<GccInput> Open(std::string_view path, GccSettings settings, Host& host,
                                        StkReporter& reporter);

  const std::string& Path() const override { return path_; }
  const StkStringList& Modules() const override { return modules_; }
  FunctionRules Rules() const override;
  size_t MostPathLength() const override;
  std::string SystemFilePath() const override { return {}; }
  std::string_view GeneratorName() const override;
  std::string_view ModuleKindName() const override;
  std::optional<std::string> GeneratorVersion() const override { return version_; }
  std::unique_ptr<ModuleReader> MakeReader() override;
  void ResolveCalls(FunctionDatabase database) override;
  // The objects and the program.
  StkStringList RelatedFiles() const override;
  std::vector<std::unique_ptr<StkSpecReader>> BuildSpecSources() override { return {}; }
  const ProgramFacts& Facts() const override { return facts_; }

 private:
  GccInput(std::string_view path, GccSettings settings, Host& host, StkReporter& reporter)
      : path_(path), settings_(std::move(settings)), host_(host), reporter_(reporter) {}

  void Search();
  void AddFolder(const std::string& folder);
  const std::string& GraphPath(size_t module) const override { return modules_[module]; }
  std::string ObjectOf(std::string_view graphPath) const override;
  void AddUnit(size_t module, const UnitRecording& recording, StkFunctionTable& functions) override;
  void ReadLooseObjects(StkFunctionTable& functions);
  void ReadLooseObject(const std::string& path, StkFunctionTable& functions);
  void BeginProgram();
  std::unique_ptr<LinkedProgram> TakeProgram();
  void PostNote(std::string_view rule, std::string text, std::string_view file,
                bool incomplete = false);
  void PostNotesOfObjects();
  void PostNotesOfFolders();

  const std::string path_;
  const GccSettings settings_;
  Host& host_;
  StkReporter& reporter_;
  StkStringList modules_;
  std::vector<std::string> namesBelow_;  // of modules: below their folder, without the ending
  std::vector<std::string> objects_;     // ordered
  std::vector<std::string> unreadable_;
  std::vector<bool> isPatternUsed_;
  size_t oldLinks_ = 0;

  // Gathered while modules are entered:
  ProgramLink link_;
  std::optional<std::string> version_;
  size_t withoutMachine_ = 0;
  uint16_t machine_ = 0;  // of the objects without a call graph
  size_t forLinking_ = 0;
  std::string firstForLinking_;
  size_t withoutGraph_ = 0;
  ProgramFacts facts_;
  std::unique_ptr<ProgramAhead> program_;  // while it is read
};

}  // namespace velkor
