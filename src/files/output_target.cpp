#include "files/output_target.h"

#include <utility>

#include "files/sibling_path.h"

namespace velkor {

class StkOutputTarget::Stream : public OutputFile {
 public:
  explicit Stream(StkOutputTarget& target) : target_(target) {}

  bool Write(std::string_view bytes) override {
    target_.fingerprint_.Add(bytes);
    return target_.file_ && target_.file_->Write(bytes);
  }
  bool Synchronize() override { return target_.file_ && target_.file_->Synchronize(); }
  bool Close() override { return true; }

 private:
  StkOutputTarget& target_;
};

bool StkOutputTarget::Open(Way way) {
  const WayToWrite needed =
      way == Way::kBeside ? WayToWrite::kBeside : host_.files.HowToWrite(path_);
  if (needed == WayToWrite::kBeside) {
    return OpenBeside();
  }
  if (needed == WayToWrite::kDirectly) {
    file_ = host_.files.OpenForWrite(path_).file;
  }
  return file_ != nullptr;
}

// Another program's save may take a file that is not held yet for one that was left behind.
bool StkOutputTarget::OpenBeside() {
  constexpr int kTries = 3;
  host_.files.RemoveAbandoned(path_);
  for (int i = 0; i < kTries && !file_; ++i) {
    std::string sibling = SiblingPath(path_, host_.codePage);
    file_ = host_.files.OpenForWrite(sibling).file;
    if (file_) {
      sibling_ = std::move(sibling);
    }
  }
  return file_ != nullptr;
}

std::unique_ptr<OutputFile> StkOutputTarget::Output() {
  return std::make_unique<Stream>(*this);
}

bool StkOutputTarget::TakePermissions(const std::string& from) {
  return host_.files.TakePermissions(sibling_, from);
}

StkOutputTarget::End StkOutputTarget::Finish(const FileSystem::MayReplace& mayReplace) {
  if (sibling_.empty()) {
    return Discard() ? End::kInPlace : End::kNotWritten;
  }
  if (!file_->Synchronize()) {
    Discard();
    return End::kNotWritten;
  }
  if (!host_.files.Replace(sibling_, path_, mayReplace, giveUp_)) {
    Discard();
    return giveUp_ && giveUp_() ? End::kGivenUp : End::kNotReplaced;
  }
  sibling_.clear();
  return Discard() ? End::kInPlace : End::kNotWritten;
}

bool StkOutputTarget::Discard() {
  if (!sibling_.empty()) {
    host_.files.Remove(std::exchange(sibling_, {}));  // while it is held
  }
  const std::unique_ptr<OutputFile> file = std::move(file_);
  return !file || file->Close();
}

}  // namespace velkor
