#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "files/fingerprint.h"
#include "platform/host.h"

namespace velkor {

// Where what is written goes: into a file beside the path, which takes the place of what is there
// once it is whole; or, where nothing is to be preserved, right to the path, where it stays. Made
// for one writing: Open, then writing to Output, then Finish or Discard. Used by one job's thread.
// The file beside is held until it has its place: what is held by nobody was left by a program
// that was killed, and goes at the next Open. Reports nothing.
class StkOutputTarget {
 public:
  enum class Way {
    kBeside,
    kAsIsNeeded,  // beside only where there is a file that can be replaced
  };
  enum class End {
    kInPlace,
    kNotWritten,   // the device did not take everything
    kNotReplaced,  // the file that is there is held or protected, or mayReplace said so
    kGivenUp,      // the same, and giveUp says so
  };

  // giveUp: of a lock on the file that is to be replaced.
  StkOutputTarget(std::string path, Host& host, FileSystem::GiveUp giveUp = {})
      : path_(std::move(path)), host_(host), giveUp_(std::move(giveUp)) {}
  ~StkOutputTarget() { Discard(); }
  StkOutputTarget(const StkOutputTarget&) = delete;
  StkOutputTarget& operator=(const StkOutputTarget&) = delete;

  const std::string& Path() const { return path_; }
  bool Open(Way way);
  // Writes to the file as long as the target is open; its Close only ends the writing.
  std::unique_ptr<OutputFile> Output();
  // A file beside gets the permissions of the one at that path. False when that fails.
  bool TakePermissions(const std::string& from);
  // What has been written is whole. mayReplace: of a file beside.
  End Finish(const FileSystem::MayReplace& mayReplace = {});
  // Of a file that was written to its path, what was written stays. False when it could not be
  // brought there.
  bool Discard();
  // Of everything that was written.
  uint64_t Fingerprint() const { return fingerprint_.Value(); }

 private:
  class Stream;

  bool OpenBeside();

  const std::string path_;
  Host& host_;
  const FileSystem::GiveUp giveUp_;
  std::unique_ptr<OutputFile> file_;  // while it is open
  std::string sibling_;               // of the file beside, until it has its place
  StkFingerprint fingerprint_;
};

}  // namespace velkor
