#include "ui/sliced_work.h"

#include <QElapsedTimer>
#include <utility>

namespace velkor::ui {

namespace {

constexpr qint64 kSliceMilliseconds = 8;
constexpr int kWaitMilliseconds = 50;

}  // namespace

SlicedWork::SlicedWork(std::function<bool()> isBusy) : isBusy_(std::move(isBusy)) {
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { DoSlice(); });
}

void SlicedWork::Start(std::function<bool()> step, std::function<void()> done) {
  step_ = std::move(step);
  done_ = std::move(done);
  timer_.start(0);
}

void SlicedWork::Stop() {
  timer_.stop();
  step_ = {};
  done_ = {};
}

void SlicedWork::DoSlice() {
  if (isBusy_()) {
    timer_.start(kWaitMilliseconds);
    return;
  }
  timer_.start(0);
  QElapsedTimer slice;
  slice.start();
  while (slice.elapsed() < kSliceMilliseconds) {
    if (!step_()) {
      const std::function<void()> done = std::exchange(done_, {});
      Stop();
      done();
      return;
    }
  }
}

}  // namespace velkor::ui
