#pragma once

#include <QTimer>
#include <functional>

namespace velkor::ui {

// Long work of the user-interface thread in slices of a few milliseconds, between which the window
// answers the user. One work at a time: a new one takes the place of one that is not done.
class SlicedWork {
 public:
  // isBusy: whether a job has what the work reads. Meanwhile the work waits.
  explicit SlicedWork(std::function<bool()> isBusy);

  // step: a small part of the work; false when it was the last. Then done is called, which may
  // start another work. Neither is called from within Start.
  void Start(std::function<bool()> step, std::function<void()> done);
  void Stop();
  bool IsRunning() const { return timer_.isActive(); }

 private:
  void DoSlice();

  std::function<bool()> isBusy_;
  std::function<bool()> step_;
  std::function<void()> done_;
  QTimer timer_;
};

}  // namespace velkor::ui
