#include "reports/result_file.h"

#include <memory>

#include "files/output_target.h"

namespace velkor::reports {

bool WriteResultFile(const std::string& path, Host& host, StkReporter& reporter,
                     const std::function<void(ResultOutput&)>& write) {
  StkOutputTarget target(path, host);
  if (!target.Open(StkOutputTarget::Way::kAsIsNeeded)) {
    reporter.PostWarning(MessageKey::kW9402, {MessageFile{path}});
    return false;
  }
  const std::unique_ptr<OutputFile> file = target.Output();
  ResultOutput output([&](std::string_view text) { return file->Write(text); });
  write(output);
  if (!output.Finish() || target.Finish() != StkOutputTarget::End::kInPlace) {
    reporter.PostWarning(MessageKey::kW9404, {MessageFile{path}});
    return false;
  }
  reporter.PostLog(MessageKey::kWritingCompleted, {path});
  return true;
}

}  // namespace velkor::reports
