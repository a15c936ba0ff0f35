#include "document/job.h"

#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <thread>
#include <vector>

namespace velkor {
namespace {

constexpr uint32_t kEnd = WM_USER + 100;

class RecordingTarget : public MessageTarget {
 public:
  void Post(uint32_t message, uint64_t) override {
    if (full) {
      throw std::bad_alloc();
    }
    posted.push_back(message);
  }

  bool full = false;
  std::vector<uint32_t> posted;  // read after the thread has ended
};

class TestJob : public StkJob {
 public:
  TestJob(MessageTarget& target, std::function<void(TestJob&)> work)
      : StkJob(Event::Reset::kManual, target), work_(std::move(work)) {}
  ~TestJob() override { Stop(); }

  void WaitForStop() {
    stopEvent_.Wait();
    SetStopped();
  }
  void End() { PostEnd(kEnd); }

 protected:
  void Run() override { work_(*this); }
  void Abandon() override { PostEnd(kEnd); }

 private:
  std::function<void(TestJob&)> work_;
};

TEST(JobTest, StopWakesTheWorkerAndJoinsIt) {
  RecordingTarget target;
  TestJob job(target, [](TestJob& self) { self.WaitForStop(); });
  job.Start();
  job.Stop();
  EXPECT_TRUE(job.Stopped());
  EXPECT_FALSE(job.EndPosted());
  EXPECT_TRUE(target.posted.empty());
  job.Stop();
  job.Wait();
}

TEST(JobTest, DestroyingARunningJobStopsIt) {
  RecordingTarget target;
  bool ended = false;
  {
    TestJob job(target, [&ended](TestJob& self) {
      self.WaitForStop();
      ended = true;
    });
    job.Start();
  }
  EXPECT_TRUE(ended);
  TestJob neverStarted(target, [](TestJob&) {});
}

TEST(JobTest, TheStopEventIsResetAtEachStart) {
  RecordingTarget target;
  TestJob job(target, [](TestJob& self) { self.End(); });
  job.Start();
  job.Stop();
  EXPECT_TRUE(job.EndPosted());
  EXPECT_FALSE(job.Stopped());
  EXPECT_EQ(target.posted, std::vector<uint32_t>{kEnd});
}

TEST(JobTest, AnExceptionEndsTheJobWithItsNotificationAndNotTheProgram) {
  RecordingTarget target;
  TestJob job(target, [](TestJob&) { throw std::bad_alloc(); });
  job.Start();
  job.Wait();
  EXPECT_TRUE(job.Failed());
  EXPECT_TRUE(job.EndPosted());
  EXPECT_EQ(target.posted, std::vector<uint32_t>{kEnd});

  target.full = true;
  TestJob unheard(target, [](TestJob& self) { self.End(); });
  unheard.Start();
  unheard.Wait();
  EXPECT_TRUE(unheard.Failed());
}

}  // namespace
}  // namespace velkor
