#include "readers/tarn/spec_sources.h"

#include <utility>

#include "readers/tarn/library_table.h"

namespace velkor {

std::vector<std::unique_ptr<StkSpecReader>> SpecSourcesOf(const StkProject& project,
                                                          const AcceptedCompiler& compiler,
                                                          Host& host, StkReporter& reporter) {
  std::vector<std::unique_ptr<StkSpecReader>> sources;
  if (compiler.info.series != 0 && compiler.info.RuntimeHelpersAccepted()) {
    auto helpers = std::make_unique<StkLibraryTable>(LibraryTableKind::kRuntimeHelpers, project,
                                                     host, reporter);
    if (compiler.runtimeNames && compiler.runtimeNames->builtIn) {
      helpers->UseBuiltIn();
    }
    sources.push_back(std::move(helpers));
    if (project.LibraryCheck()) {
      sources.push_back(
          std::make_unique<StkLibraryTable>(LibraryTableKind::kStandard, project, host, reporter));
    }
  }
  sources.push_back(
      std::make_unique<StkSystemFileReader>(project.SystemFilePath(), host, reporter));
  return sources;
}

}  // namespace velkor
