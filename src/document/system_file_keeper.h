#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "files/output_target.h"
#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

// A stk system file of which this analysis knows nothing yet: another program has written it.
struct ChangedSystemFile {
  uint64_t fingerprint = 0;
  std::optional<std::string> text;  // none when it is too large to be one
};

// Looks at a stk system file that is about to be replaced. What is known to be in force may go.
// What was read, but could not be taken whole (a module was unreadable, a line names no function),
// is kept: a copy stands beside it, named with ".bak", ".bak2", ... behind the path, with the
// permissions of the file; a copy that is there already is never overwritten, and the same content
// is kept once. Any other content has come from another program meanwhile, and is to be read.
class StkSystemFileKeeper {
 public:
  // Fingerprints: of the content whose adjustments are all in force, and of one that was read and
  // not taken whole, if any.
  struct Seen {
    std::optional<uint64_t> known;
    std::optional<uint64_t> incomplete;
  };
  enum class State {
    kMayBeReplaced,
    kChanged,  // TakeChanged says how
    kNotKept,  // nothing is reported
  };

  // giveUp: of a lock on the file.
  StkSystemFileKeeper(std::string path, Seen seen, Host& host, StkReporter& reporter,
                      FileSystem::GiveUp giveUp)
      : path_(std::move(path)),
        seen_(seen),
        host_(host),
        reporter_(reporter),
        giveUp_(std::move(giveUp)) {}

  // Where copies of the file are, or would be.
  static std::vector<std::string> CopyPaths(const std::string& path);
  // The same, without those that are certainly not there.
  static std::vector<std::string> PossibleCopies(const std::string& path, const Host& host);
  // A copy that was made is logged.
  State Keep();
  // After Keep, about the file that stands there now: nothing of it would be lost.
  bool IsKept(InputFile& file);
  // IsKept has met another content.
  bool Overtaken() const { return overtaken_; }
  ChangedSystemFile TakeChanged() { return std::exchange(changed_, {}); }

 private:
  bool Copy(uint64_t fingerprint);
  bool CopyTo(const std::string& copyPath, uint64_t fingerprint);
  bool WriteCopy(StkOutputTarget& copy, uint64_t fingerprint);

  const std::string path_;
  const Seen seen_;
  std::optional<uint64_t> copied_;  // of the content that a copy has
  bool overtaken_ = false;
  ChangedSystemFile changed_;
  Host& host_;
  StkReporter& reporter_;
  const FileSystem::GiveUp giveUp_;
};

}  // namespace velkor
