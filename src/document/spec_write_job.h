#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/recompute.h"
#include "document/job.h"
#include "document/job_kind.h"
#include "document/system_file_keeper.h"
#include "files/spec_writer.h"
#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

struct SpecWriteOrder {
  StkSpecWriter::Mode mode = StkSpecWriter::Mode::kAutomatic;
  std::string path;
  // Files that the analysis is made from: none of them is overwritten.
  std::vector<std::string> inputs;
  // Automatic mode: what may be replaced as it stands, and what is to be kept beside the new file.
  StkSystemFileKeeper::Seen seen;
  // Automatic mode: lines that are kept behind the others (StkSpecWriter).
  std::vector<std::string> keptLines;
};

// Writes the adjustments in force into a stack size specification file. Posts its end
// notification at every end. The function table must not change meanwhile. An automatic save fails
// without a message where another program has written the file (Changed): what it states is to be
// put in force before the next save.
class StkSpecWriteJob : public StkJob {
 public:
  static constexpr JobKind kKind = JobKind::kSpecWrite;

  StkSpecWriteJob(SpecWriteOrder order, const StkFunctionTable& functions, Host& host,
                  StkReporter& reporter, MessageTarget& mainWindow);
  ~StkSpecWriteJob() override;

  bool IsAutomatic() const { return order_.mode == StkSpecWriter::Mode::kAutomatic; }
  // The fingerprint of what an automatic save that completed has written.
  std::optional<uint64_t> Written() const { return written_; }
  // Why an automatic save has failed without a message. Valid after Wait or Stop.
  const std::optional<ChangedSystemFile>& Changed() const { return changed_; }

 protected:
  WorkEnd Run() override;
  void Abandon() override;

 private:
  // False after having reported.
  bool PathAllowed();
  // False: the file is not to be replaced, after having reported or with Changed.
  bool Keep();
  WorkEnd WriteFile(StkSpecWriter& writer);
  WorkEnd Write(StkSpecWriter& writer);
  bool MayReplace(InputFile* old);
  bool AfterFunction(uint32_t count);

  const SpecWriteOrder order_;
  const StkFunctionTable& functions_;
  Host& host_;
  StkReporter& reporter_;
  StkSystemFileKeeper keeper_;
  std::optional<uint64_t> written_;
  std::optional<ChangedSystemFile> changed_;
};

}  // namespace velkor
