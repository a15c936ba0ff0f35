#include "document_host.h"

namespace velkor {
namespace {

using testing::DocumentHost;

// Other programs that know no locks write a file while it is read.
class ChangingFilesTest : public DocumentHost {
 protected:
  // The file has this content from its second read on.
  void ChangeWhileRead(const std::string& path, const std::string& content) {
    auto reads = std::make_shared<std::atomic<int>>(0);
    host.files.OnRead(path, [this, path, content, reads] {
      if (++*reads == 2) {
        host.files.Put(path, content);
      }
    });
  }
  static std::string NotReadable(const std::string& path) {
    return "W9401 Cannot open file to read (" + path + ")";
  }
};

TEST_F(ChangingFilesTest, AFigureThatWasCutIsNotTakenForAnother) {
  PutProject({"a", "b"});
  PutModule("b", {"g 30"});
  const std::string text = Module("a.c", {"main 10"}) + Lines(40000) +
                           "; $FUNC f()\n; CODE SIZE=12 bytes, 0, STACK_SIZE=1000 bytes\n";
  host.files.Put(ModulePath("a"), text);
  ChangeWhileRead(ModulePath("a"), text.substr(0, text.find("000 bytes")));
  OpenAndFinish();
  EXPECT_EQ(Find("f"), nullptr);
  EXPECT_TRUE(Logged(NotReadable(ModulePath("a"))));
  EXPECT_TRUE(Logged(ModulePath("a") + " Reading aborted."));
  EXPECT_TRUE(Logged(ModulePath("b") + " Reading completed."));
  host.files.OnRead(ModulePath("a"), nullptr);
  host.files.Put(ModulePath("a"), text);
  document.Recalculate();
  Finish();
  EXPECT_EQ(Total("f"), 1000u);
}

// Between the moment in which a save looks at the old file and that in which it replaces it.
TEST_F(ChangingFilesTest, WhatAnotherProgramSavesMeanwhileStaysInForce) {
  PutChain();
  host.files.Put(kSystemFile, "f, ADD=5\r\nmain, ADD=1\r\n");
  OpenAndFinish();
  host.files.BeforeReplace([this] {
    host.files.Put(kSystemFile, "g, ADD=9, CALL=main\r\nf, ADD=7\r\n");
    host.files.BeforeReplace(nullptr);
  });
  StkAdjustment adjustment;
  adjustment.margin = 8;
  view.hints.clear();
  ASSERT_TRUE(document.AdjustFunction(*Find("f"), adjustment));
  Finish();
  EXPECT_EQ(host.files.Get(kSystemFile), "f, ADD=8\r\ng, ADD=9, CALL=main\r\n")
      << "one's own statement came last, every other one is the other's";
  EXPECT_EQ(view.Take(), (std::vector<ViewHint>{HINT_SIZES, HINT_STRUCTURE}));
  EXPECT_EQ(Find("main")->adjustment, nullptr);
  EXPECT_TRUE(Find("g")->Is(FN_RECURSIVE));
  EXPECT_TRUE(Logged("Stack size specification of main canceled."));
  EXPECT_TRUE(Logged("Stack size specification of g adjusted."));
  EXPECT_FALSE(document.AnyWritingFailed());

  // A window that was left open; its reset takes that function's statement alone.
  host.files.Put(kSystemFile, "f, ADD=8\r\nmain, ADD=3\r\n");
  ASSERT_TRUE(document.CancelAdjustment(*Find("f")));
  Finish();
  EXPECT_EQ(host.files.Get(kSystemFile), "main, ADD=3\r\n");
  EXPECT_EQ(Find("g")->adjustment, nullptr);
  // What states something else than adjustments is kept, and replaced.
  host.files.Put(kSystemFile, "main, ADD=3, RECTIME=2\r\nlost, ADD=1\r\n");
  ASSERT_TRUE(document.AdjustFunction(*Find("f"), adjustment));
  Finish();
  EXPECT_EQ(host.files.Get(kSystemFile),
            "main, ADD=3\r\nf, ADD=8\r\n"
            "# Kept without effect: each names a function that was not found.\r\nlost, ADD=1\r\n");
  EXPECT_EQ(host.files.Get(std::string(kSystemFile) + ".bak"),
            "main, ADD=3, RECTIME=2\r\nlost, ADD=1\r\n");
  // A callee that is called directly all the same, and one that is not there.
  host.files.Put(kSystemFile, "main, ADD=3, CALL=f\r\ng, CALL=gone\r\nf, CALL=gone\r\n");
  ASSERT_TRUE(document.CancelAdjustment(*Find("f")));
  Finish();
  EXPECT_EQ(host.files.Get(kSystemFile),
            "main, ADD=3, CALL=f\r\n"
            "# Kept without effect: each names a function that was not found.\r\n"
            "g, CALL=gone\r\n");
}

TEST_F(ChangingFilesTest, ASaveThatNeverGetsItsTurnSaysSo) {
  PutChain();
  OpenAndFinish();
  int number = 0;
  host.files.BeforeReplace(
      [&] { host.files.Put(kSystemFile, "g, ADD=" + std::to_string(++number) + "\r\n"); });
  StkAdjustment adjustment;
  adjustment.margin = 8;
  ASSERT_TRUE(document.AdjustFunction(*Find("f"), adjustment));
  Finish();
  host.files.BeforeReplace(nullptr);
  EXPECT_TRUE(Logged("W9402 Cannot open file to write (C:\\p\\app.psg)"));
  EXPECT_TRUE(document.SystemSaveFailed() && document.AnyWritingFailed());
  EXPECT_TRUE(document.SettleSystemSave());
  EXPECT_EQ(host.files.Get(kSystemFile), "f, ADD=8\r\ng, ADD=" + std::to_string(number) + "\r\n");
}

}  // namespace
}  // namespace velkor
