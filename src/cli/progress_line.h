#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "document/job_monitor.h"

namespace velkor::cli {

// The progress display at the foot of a terminal: one line of standard error that is drawn over
// and over. User-interface thread.
class ProgressLine : public ProgressBar {
 public:
  static constexpr std::chrono::milliseconds kDelay{500};

  // Not shown: draws nothing at all. Else nothing before a while has passed: what is done soon
  // needs no display.
  ProgressLine(bool shown, size_t width, std::chrono::milliseconds delay = kDelay)
      : shown_(shown), width_(width), from_(std::chrono::steady_clock::now() + delay) {}

  bool IsShown() const { return shown_; }
  void SetPosition(uint64_t position) override;
  void SetRange(uint64_t range) override;
  void StepIt() override;
  // Takes the line away, to make room for others; the next change draws it again.
  void Erase();

 private:
  void Draw();

  const bool shown_;
  const size_t width_;
  const std::chrono::steady_clock::time_point from_;
  uint64_t position_ = 0;
  uint64_t range_ = 0;
  std::string drawn_;
};

}  // namespace velkor::cli
