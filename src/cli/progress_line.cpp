#include "cli/progress_line.h"

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>

namespace velkor::cli {
namespace {

constexpr size_t kLongestBar = 40;
constexpr size_t kBesideBar = 8;  // brackets, blank, "100%" and the last column

}  // namespace

void ProgressLine::SetPosition(uint64_t position) {
  position_ = position;
  Draw();
}

void ProgressLine::SetRange(uint64_t range) {
  range_ = range;
  Draw();
}

void ProgressLine::StepIt() {
  SetPosition(position_ + 1);
}

void ProgressLine::Erase() {
  if (!drawn_.empty()) {
    fmt::print(stderr, "\r\x1b[K");
    drawn_.clear();
  }
}

void ProgressLine::Draw() {
  if (!shown_ || std::chrono::steady_clock::now() < from_) {
    return;
  }
  const double part =
      range_ == 0 ? 0 : std::min(1.0, static_cast<double>(position_) / static_cast<double>(range_));
  if (part <= 0) {
    Erase();
    return;
  }
  const size_t room = std::min(kLongestBar, width_ > kBesideBar ? width_ - kBesideBar : 0);
  const auto filled = static_cast<size_t>(part * static_cast<double>(room));
  std::string line = fmt::format("[{}{}] {:3.0f}%", std::string(filled, '#'),
                                 std::string(room - filled, ' '), part * 100);
  if (line != drawn_) {
    fmt::print(stderr, "\r{}", line);
    std::fflush(stderr);
    drawn_ = std::move(line);
  }
}

}  // namespace velkor::cli
