#pragma once

#include <cstdint>
#include <optional>
#include <string>

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
  StkSystemFileKeeper(std::string path, Host& host, StkReporter& reporter)
      : path_(std::move(path)), host_(host), reporter_(reporter) {}

  // known: the fingerprint of the content whose adjustments are all in force, if any.
  // False when the file must not be replaced, because it could not be kept; nothing is reported
  // then. A copy that was made is logged.
  bool Keep(std::optional<uint64_t> known);

 private:
  bool Copy(uint64_t fingerprint);
  bool CopyTo(const std::string& copyPath, uint64_t fingerprint);

  const std::string path_;
  Host& host_;
  StkReporter& reporter_;
};

}  // namespace velkor
