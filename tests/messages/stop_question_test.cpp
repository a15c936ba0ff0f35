#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <new>
#include <thread>

#include "support/recorder.h"

namespace velkor {
namespace {

using testing::Recorder;
using Lines = std::vector<std::string>;

constexpr const char* kText = "W9426 Illegal format";

StkMessage Message() {
  return {.key = MessageKey::kW9426, .text = kText};
}

class StopQuestionTest : public ::testing::Test {
 protected:
  std::future<StopAnswer> AskInJob(StopAnswer current = StopAnswer::kRetry) {
    return std::async(std::launch::async, [this, current] {
      return recorder_.reporter.AskStopReading(stop_, current, Message());
    });
  }

  StopAnswer AskHere(StopAnswer current) {
    return recorder_.reporter.AskStopReading(stop_, current, Message());
  }

  void HandleUntilABoxWasAnswered() {
    recorder_.queue.RunUntil([this] { return !recorder_.boxes.boxes.empty(); });
  }

  CodePage codePage_ = CodePage::Utf8();
  Recorder recorder_{codePage_};
  Event stop_{Event::Reset::kManual};
};

TEST_F(StopQuestionTest, TheAnswerReachesTheJob) {
  const std::pair<BoxAnswer, StopAnswer> cases[] = {{BoxAnswer::kAbort, StopAnswer::kAbort},
                                                    {BoxAnswer::kRetry, StopAnswer::kRetry},
                                                    {BoxAnswer::kIgnore, StopAnswer::kIgnore},
                                                    {BoxAnswer::kOk, StopAnswer::kAbort}};
  for (const auto& [pressed, expected] : cases) {
    recorder_.boxes.boxes.clear();
    recorder_.boxes.answerWith = [button = pressed](const auto&) { return button; };
    auto answer = AskInJob();
    HandleUntilABoxWasAnswered();
    EXPECT_EQ(answer.get(), expected);
    const auto& box = recorder_.boxes.boxes.front();
    EXPECT_EQ(box.text, "W9426 Illegal format\nDo you want to stop reading?");
    EXPECT_EQ(box.icon, BoxIcon::kQuestion);
    EXPECT_EQ(box.buttons, BoxButtons::kAbortRetryIgnore);
  }
  EXPECT_EQ(recorder_.log.lines, Lines(4, std::string(kText)));
}

TEST_F(StopQuestionTest, NothingIsShownAfterAbortOrWithoutALogView) {
  EXPECT_EQ(AskHere(StopAnswer::kAbort), StopAnswer::kAbort);
  recorder_.reporter.RegisterLogView(nullptr);
  EXPECT_EQ(AskHere(StopAnswer::kRetry), StopAnswer::kAbort);
  EXPECT_EQ(AskHere(StopAnswer::kIgnore), StopAnswer::kAbort);
  EXPECT_FALSE(recorder_.queue.Drain());
}

TEST_F(StopQuestionTest, AStopBeforeTheBoxEndsTheWait) {
  auto answer = AskInJob();
  stop_.Set();
  EXPECT_EQ(answer.get(), StopAnswer::kAbort);
  EXPECT_TRUE(stop_.Test());
  recorder_.boxes.answerWith = [](const auto&) { return BoxAnswer::kIgnore; };
  recorder_.queue.Drain();
  EXPECT_EQ(recorder_.boxes.boxes.size(), 1U);
}

TEST_F(StopQuestionTest, AStopWhileTheBoxIsOpenEndsTheWait) {
  auto answer = AskInJob();
  recorder_.boxes.answerWith = [&](const auto&) {
    stop_.Set();
    EXPECT_EQ(answer.get(), StopAnswer::kAbort);
    return BoxAnswer::kRetry;
  };
  HandleUntilABoxWasAnswered();
}

TEST_F(StopQuestionTest, WhatCannotBePostedIsDroppedAndAborts) {
  bool full = true;
  int posted = 0;
  StkReporter reporter(recorder_.messages, recorder_.boxes, [&] {
    ++posted;
    if (full) {
      throw std::bad_alloc();
    }
  });
  reporter.RegisterLogView(&recorder_.log);
  EXPECT_EQ(reporter.AskStopReading(stop_, StopAnswer::kRetry, Message()), StopAnswer::kAbort);
  EXPECT_EQ(reporter.AskStopReading(stop_, StopAnswer::kIgnore, Message()), StopAnswer::kAbort);
  full = false;
  reporter.PostLog(MessageKey::kReadingStarted, {"a"});
  for (int i = 0; i < posted; ++i) {
    reporter.HandleRequest();
  }
  EXPECT_EQ(posted, 3);
  EXPECT_EQ(recorder_.log.lines, Lines{"a Reading..."});
}

TEST_F(StopQuestionTest, AViewThatGoesAwayAnswersWhatStillWaits) {
  Event arrived{Event::Reset::kAutomatic};
  StkReporter reporter(recorder_.messages, recorder_.boxes, [&arrived] { arrived.Set(); });
  reporter.RegisterLogView(&recorder_.log);
  auto answer = std::async(std::launch::async, [&] {
    return reporter.AskStopReading(stop_, StopAnswer::kRetry, Message());
  });
  arrived.Wait();
  reporter.RegisterLogView(nullptr);
  EXPECT_EQ(answer.get(), StopAnswer::kAbort);
  reporter.RegisterLogView(&recorder_.log);
  reporter.HandleRequest();
  EXPECT_TRUE(recorder_.log.lines.empty());
  EXPECT_TRUE(recorder_.boxes.boxes.empty());
}

TEST_F(StopQuestionTest, StopsAndAnswersRace) {
  recorder_.boxes.answerWith = [](const auto&) { return BoxAnswer::kIgnore; };
  for (int round = 0; round < 300; ++round) {
    auto answer = AskInJob();
    auto stopper = std::async(std::launch::async, [this] { stop_.Set(); });
    while (answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
      recorder_.queue.Drain();
      std::this_thread::yield();
    }
    stopper.get();
    const StopAnswer given = answer.get();
    EXPECT_TRUE(given == StopAnswer::kAbort || given == StopAnswer::kIgnore);
    recorder_.queue.Drain();
    stop_.ResetEvent();
  }
  EXPECT_EQ(recorder_.boxes.boxes.size(), 300U);
}

}  // namespace
}  // namespace velkor
