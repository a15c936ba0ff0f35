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
TEST_F(ChangingFilesTest, AnotherProgramsSaveIsNotReplacedUnseen) {
  PutChain();
  host.files.Put(kSystemFile, "f, ADD=5\r\n");
  OpenAndFinish();
  host.files.BeforeReplace([this] { host.files.Put(kSystemFile, "g, ADD=9\r\n"); });
  StkAdjustment adjustment;
  adjustment.margin = 8;
  ASSERT_TRUE(document.AdjustFunction(*Find("f"), adjustment));
  Finish();
  EXPECT_TRUE(Logged("W9402 Cannot open file to write (C:\\p\\app.psg)"));
  EXPECT_EQ(host.files.Get(kSystemFile), "g, ADD=9\r\n");
  host.files.BeforeReplace(nullptr);
  ASSERT_TRUE(document.AdjustFunction(*Find("f"), adjustment));
  Finish();
  EXPECT_EQ(host.files.Get(kSystemFile), "f, ADD=8\r\n");
  EXPECT_EQ(host.files.Get(std::string(kSystemFile) + ".bak"), "g, ADD=9\r\n");
}

}  // namespace
}  // namespace velkor
