#include "messages/reporter.h"

#include <gtest/gtest.h>
#include <thread>

#include "support/recorder.h"

namespace velkor {
namespace {

using testing::Recorder;
using testing::RecordingBoxes;
using Lines = std::vector<std::string>;

class Reporter : public ::testing::Test {
 protected:
  const RecordingBoxes::Box& OnlyBox() {
    EXPECT_EQ(recorder_.boxes.boxes.size(), 1U);
    return recorder_.boxes.boxes.front();
  }

  CodePage codePage_ = CodePage::Utf8();
  Recorder recorder_{codePage_};
  StkReporter& reporter_ = recorder_.reporter;
};

TEST_F(Reporter, WithoutALogViewOnlyBoxesRemain) {
  reporter_.RegisterLogView(nullptr);
  reporter_.LogMessage(MessageKey::kSpecificationCanceled, {"f"});
  reporter_.PostLog(MessageKey::kReadingStarted, {"a.asm"});
  reporter_.PostWarning(MessageKey::kW9404, {"a.txt"});
  recorder_.queue.Drain();
  EXPECT_TRUE(recorder_.boxes.boxes.empty());
  reporter_.ShowWarning(MessageKey::kW9404, {"a.txt"});
  EXPECT_EQ(OnlyBox().text, "W9404 File write error (a.txt).");
  EXPECT_TRUE(recorder_.log.lines.empty());
}

TEST_F(Reporter, AFatalMessageClosesOnlyARunFromTheCommandLine) {
  size_t closes = 0;
  size_t boxesAtClose = 0;
  reporter_.SetCloseRequest([&] {
    ++closes;
    boxesAtClose = recorder_.boxes.boxes.size();
  });
  reporter_.ShowFatal(MessageKey::kE9300, {"a.prj"});
  EXPECT_EQ(closes, 0U);
  reporter_.SetOpenedFromCommandLine(true);
  reporter_.ShowFatal(MessageKey::kE9300, {"a.prj"});
  EXPECT_EQ(closes, 1U);
  EXPECT_EQ(boxesAtClose, 2U);
  EXPECT_TRUE(recorder_.log.lines.empty());
}

TEST_F(Reporter, WhatIsPostedKeepsItsOrderAndItsText) {
  std::string name = "a.asm";
  reporter_.PostLog(MessageKey::kReadingStarted, {name});
  name = "other";
  reporter_.PostWarning(MessageKey::kW9404, {MessageFile{"x"}});
  reporter_.PostNote({.rule = "some-rule", .text = "odd", .file = {}, .function = {}});
  reporter_.PostLog(MessageKey::kReadingAborted, {"a.asm"});
  EXPECT_TRUE(recorder_.log.lines.empty());
  recorder_.queue.Drain();
  EXPECT_EQ(recorder_.log.lines, (Lines{"a.asm Reading...", "W9404 File write error (x).",
                                        "note: odd", "a.asm Reading aborted."}));
  EXPECT_EQ(recorder_.log.messages[1].file, "x");
  EXPECT_EQ(OnlyBox().text, "W9404 File write error (x).");
  EXPECT_EQ(OnlyBox().icon, BoxIcon::kExclamation);
  EXPECT_EQ(OnlyBox().buttons, BoxButtons::kOk);
}

TEST_F(Reporter, JobsPostWhileABoxIsOpen) {
  recorder_.boxes.answerWith = [this](const auto&) {
    std::thread([this] { reporter_.PostLog(MessageKey::kReadingStarted, {"b.asm"}); }).join();
    return BoxAnswer::kOk;
  };
  reporter_.PostWarning(MessageKey::kW9404, {"x"});
  recorder_.queue.Drain();
  reporter_.ShowWarning(MessageKey::kW9404, {"y"});
  recorder_.queue.Drain();
  EXPECT_EQ(recorder_.log.lines, (Lines{"W9404 File write error (x).", "b.asm Reading...",
                                        "W9404 File write error (y).", "b.asm Reading..."}));
}

}  // namespace
}  // namespace velkor
