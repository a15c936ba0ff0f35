#include <algorithm>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "platform/event.h"
#include "platform/message_target.h"
#include "platform/ordered_work.h"
#include "platform/worker_thread.h"

namespace velkor {
namespace {

TEST(EventTest, ResetKindDecidesWhetherASignalIsConsumed) {
  Event automatic(Event::Reset::kAutomatic);
  Event manual(Event::Reset::kManual);
  EXPECT_FALSE(automatic.Test());
  for (Event* event : {&automatic, &manual}) {
    event->Set();
    event->Set();
    event->Wait();
  }
  EXPECT_FALSE(automatic.Test());
  EXPECT_TRUE(manual.Test());
  EXPECT_TRUE(manual.Test());
  manual.ResetEvent();
  EXPECT_FALSE(manual.Test());
}

TEST(EventTest, WaitForEitherPrefersTheFirstAndConsumesOnlyTheAnswered) {
  Event first(Event::Reset::kAutomatic);
  Event second(Event::Reset::kAutomatic);
  first.Set();
  second.Set();
  EXPECT_EQ(Event::WaitForEither(first, second), 0);
  EXPECT_FALSE(first.Test());
  EXPECT_EQ(Event::WaitForEither(first, second), 1);
  EXPECT_FALSE(second.Test());
  first.Set();
  EXPECT_EQ(Event::WaitForEither(first, first), 0);
}

// Every signal is awaited before the next one is given, so one lost wakeup hangs the test.
TEST(EventTest, NoSignalIsLostBetweenTwoEvents) {
  constexpr int kRounds = 20000;
  Event answer(Event::Reset::kAutomatic);
  Event stop(Event::Reset::kAutomatic);
  Event taken(Event::Reset::kAutomatic);
  int counts[2] = {0, 0};
  WorkerThread waiter([&] {
    for (int i = 0; i < kRounds; ++i) {
      ++counts[Event::WaitForEither(answer, stop)];
      taken.Set();
    }
  });
  waiter.Resume();
  for (int i = 0; i < kRounds; ++i) {
    (i % 3 == 0 ? stop : answer).Set();
    taken.Wait();
  }
  waiter.Wait();
  EXPECT_EQ(counts[1], (kRounds + 2) / 3);
  EXPECT_EQ(counts[0], kRounds - counts[1]);
}

// An automatic event with several kinds of waiters lets exactly one pass for each signal.
TEST(EventTest, OneSignalReleasesOneOfSeveralWaiters) {
  constexpr int kSignals = 4000;
  Event shared(Event::Reset::kAutomatic);
  Event end(Event::Reset::kManual);
  Event taken(Event::Reset::kAutomatic);
  std::atomic<int> passed = 0;
  std::vector<std::unique_ptr<WorkerThread>> waiters;
  for (int i = 0; i < 3; ++i) {
    waiters.push_back(std::make_unique<WorkerThread>([&] {
      while (Event::WaitForEither(shared, end) == 0) {
        ++passed;
        taken.Set();
      }
    }));
    waiters.back()->Resume();
  }
  for (int i = 0; i < kSignals; ++i) {
    shared.Set();
    taken.Wait();
    ASSERT_EQ(passed, i + 1);
  }
  end.Set();
  for (const auto& waiter : waiters) {
    waiter->Wait();
  }
  EXPECT_FALSE(shared.Test());
}

TEST(WorkerThreadTest, WorksOnceAfterResumeAndNotAtAllWithoutIt) {
  int worked = 0;
  {
    WorkerThread worker([&worked] { ++worked; });
    worker.Resume();
    worker.Wait();
    EXPECT_EQ(worked, 1);
    worker.Wait();  // the object outlives its thread
  }
  {
    const WorkerThread neverResumed([&worked] { ++worked; });
  }
  EXPECT_EQ(worked, 1);
}

TEST(MessageQueueTest, RunUntilStopsBeforeTheNextHandlerAndKeepsTheOrderOfEachThread) {
  constexpr int kEach = 2000;
  MessageQueue queue;
  std::vector<int> seen[2];
  std::vector<std::unique_ptr<WorkerThread>> posters;
  for (std::vector<int>& mine : seen) {
    posters.push_back(std::make_unique<WorkerThread>([&queue, &mine] {
      for (int i = 0; i < kEach; ++i) {
        queue.Post([&mine, i] { mine.push_back(i); });
      }
    }));
    posters.back()->Resume();
  }
  queue.RunUntil([&seen] { return seen[0].size() + seen[1].size() == 2 * kEach; });
  for (const std::vector<int>& numbers : seen) {
    for (int i = 0; i < kEach; ++i) {
      ASSERT_EQ(numbers[static_cast<size_t>(i)], i);
    }
  }
  bool handled = false;
  queue.Post([&handled] { handled = true; });
  queue.RunUntil([] { return true; });
  EXPECT_FALSE(handled);
}

TEST(MessageQueueTest, WaitingTakesNoProcessorTime) {
  MessageQueue queue;
  bool finished = false;
  int questions = 0;
  WorkerThread poster([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    queue.Post([&finished] { finished = true; });
  });
  poster.Resume();
  queue.RunUntil([&] {
    ++questions;
    return finished;
  });
  EXPECT_LE(questions, 4);
}

TEST(OrderedWork, PartsAreTakenInOrderByAnyNumberOfThreads) {
  for (const size_t threads : {1U, 2U, 8U}) {
    for (const size_t parts : {0U, 1U, 3U, 1000U}) {
      OrderedWork work{.parts = parts, .threads = threads, .make = {}, .take = {}};
      std::vector<size_t> made(work.Slots());
      std::vector<size_t> taken;
      work.make = [&](size_t part, size_t slot) { made[slot] = part; };
      work.take = [&](size_t part, size_t slot) {
        EXPECT_EQ(made[slot], part);
        taken.push_back(part);
      };
      work.Run();
      ASSERT_EQ(taken.size(), parts);
      EXPECT_TRUE(std::ranges::is_sorted(taken));
    }
  }
}

TEST(ForEachRange, EachNumberIsInOneRange) {
  for (const size_t threads : {1U, 2U, 8U}) {
    for (const size_t count : {0U, 1U, 4096U, 100000U}) {
      std::vector<int> times(count, 0);
      ForEachRange(count, threads, [&](uint32_t first, uint32_t end) {
        for (uint32_t number = first; number < end; ++number) {
          ++times[number];
        }
      });
      EXPECT_EQ(std::ranges::count(times, 1), count);
    }
  }
}

TEST(OrderedWork, WhatAStepThrowsComesOutInItsTurn) {
  for (const bool inMake : {true, false}) {
    std::vector<size_t> taken;
    const auto fail = [](size_t part) {
      if (part == 70) {
        throw std::runtime_error("70");
      }
    };
    const OrderedWork work{.parts = 1000,
                           .threads = 3,
                           .make = [&](size_t part, size_t) { inMake ? fail(part) : void(); },
                           .take =
                               [&](size_t part, size_t) {
                                 inMake ? void() : fail(part);
                                 taken.push_back(part);
                               }};
    EXPECT_THROW(work.Run(), std::runtime_error);
    EXPECT_EQ(taken.size(), 70U);
  }
}

}  // namespace
}  // namespace velkor
