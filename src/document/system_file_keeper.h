#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

// Keeps a stk system file that is about to be replaced although its content is not known to be in
// force: it may state adjustments that this analysis could not take (a module was unreadable, the
// reading was stopped, another program has written it since). The copy stands beside it, named
// with ".bak", ".bak2", ... behind the path; a copy that is there already is never overwritten,
// and the same content is kept once.
class StkSystemFileKeeper {
 public:
  // known: the fingerprint of the content whose adjustments are all in force, if any.
  StkSystemFileKeeper(std::string path, std::optional<uint64_t> known, Host& host,
                      StkReporter& reporter)
      : path_(std::move(path)), known_(known), host_(host), reporter_(reporter) {}

  // False when the file must not be replaced, because it could not be kept; nothing is reported
  // then. A copy that was made is logged.
  bool Keep();
  // After Keep, about the file that stands there now: nothing of it would be lost.
  bool IsKept(InputFile& file) const;

 private:
  bool Copy(uint64_t fingerprint);
  bool CopyTo(const std::string& copyPath, uint64_t fingerprint);
  bool WriteCopy(const std::string& copyPath, uint64_t fingerprint);

  const std::string path_;
  const std::optional<uint64_t> known_;
  std::optional<uint64_t> copied_;  // of the content that a copy has
  Host& host_;
  StkReporter& reporter_;
};

}  // namespace velkor
