#pragma once

#include <memory>
#include <string>
#include <vector>

#include "files/spec_reader.h"
#include "readers/tarn/name_set.h"
#include "readers/tarn/project.h"

namespace velkor {

enum class LibraryTableKind { kStandard, kRuntimeHelpers };

// A system library stack size table: a file of the data folder or, when that cannot be opened,
// the copy built into the program.
class StkLibraryTable : public StkSpecReader {
 public:
  // The variant is chosen by the project's options.
  StkLibraryTable(LibraryTableKind kind, const StkProject& project, Host& host,
                  StkReporter& reporter);

  // W9427 is not reported: only the names are wanted.
  void SetNoMissingWarning() { noMissingWarning_ = true; }
  std::unique_ptr<StkByteSource> Open(const FileSystem::GiveUp& giveUp) override;
  // The file is not tried.
  void UseBuiltIn() { usesBuiltIn_ = true; }
  // After Open.
  bool UsesBuiltIn() const { return usesBuiltIn_; }

 private:
  bool MayBeMissed() const;

  bool usesBuiltIn_ = false;
  bool noMissingWarning_ = false;
  uint32_t resourceId_;
  std::string displayName_;
};

// Where each table of every variant is, or would be.
std::vector<std::string> LibraryTablePaths(const Host& host, const StkReporter& reporter);

// The names of the runtime helper table that the project's options choose; some of them once the
// stop event is set. Any thread.
RuntimeNameSet LoadRuntimeNames(const StkProject& project, Host& host, StkReporter& reporter,
                                Event& stopEvent);

}  // namespace velkor
