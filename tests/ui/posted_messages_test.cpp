#include "ui/posted_messages.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "qt_environment.h"

namespace velkor {
namespace {

class Posted : public ::testing::Test {
 protected:
  Posted() {
    posted.SetHandlers({[this](uint32_t message, uint64_t) {
                          handled.push_back("n" + std::to_string(message));
                          if (onNotification) {
                            onNotification(message);
                          }
                        },
                        [this](LogRequest request) {
                          handled.push_back("begin " + request.text);
                          if (onRequest) {
                            onRequest(request.text);
                          }
                          handled.push_back("end " + request.text);
                        },
                        [this] { ++batches; }});
  }
  void Ask(const std::string& text) { posted.PostRequest({LogLineRequest, text, nullptr}); }
  static void RunLoop() {
    QEventLoop loop;
    QTimer::singleShot(30, &loop, &QEventLoop::quit);
    loop.exec();
  }

  QApplication& application = testing::TestApplication();
  PostedMessages posted;
  std::vector<std::string> handled;
  std::function<void(uint32_t)> onNotification;
  std::function<void(const std::string&)> onRequest;
  int batches = 0;
};

TEST_F(Posted, ArrivesInTheOrderOfPosting) {
  posted.Post(1, 0);
  Ask("a");
  posted.Post(2, 0);
  Ask("b");
  EXPECT_TRUE(handled.empty());
  RunLoop();
  EXPECT_EQ(handled,
            (std::vector<std::string>{"n1", "begin a", "end a", "n2", "begin b", "end b"}));
  EXPECT_GE(batches, 1);
}

TEST_F(Posted, RequestsWaitForTheBoxOfAnEarlierOneWhileNotificationsGoOn) {
  onRequest = [](const std::string& text) {
    if (text == "box") {
      RunLoop();
    }
  };
  Ask("box");
  Ask("later");
  posted.Post(1, 0);
  RunLoop();
  RunLoop();
  EXPECT_EQ(handled,
            (std::vector<std::string>{"begin box", "n1", "end box", "begin later", "end later"}));
}

TEST_F(Posted, RequestsWaitForABoxOfTheUserInterface) {
  {
    const PostedMessages::Hold outer(posted);
    {
      const PostedMessages::Hold inner(posted);
      Ask("a");
      posted.Post(1, 0);
      RunLoop();
    }
    RunLoop();
    EXPECT_EQ(handled, std::vector<std::string>{"n1"});
    EXPECT_TRUE(posted.IsHeld());
  }
  RunLoop();
  EXPECT_EQ(handled, (std::vector<std::string>{"n1", "begin a", "end a"}));
}

TEST_F(Posted, ANotificationIsNeverHandledInsideAnother) {
  onNotification = [this](uint32_t message) {
    if (message == 1) {
      posted.Post(2, 0);
      Ask("a");
      RunLoop();
      posted.HandleAll();
      handled.push_back("end n1");
    }
  };
  posted.Post(1, 0);
  RunLoop();
  RunLoop();
  EXPECT_EQ(handled, (std::vector<std::string>{"n1", "end n1", "n2", "begin a", "end a"}));
}

TEST_F(Posted, NothingIsHandledWithoutHandlersOrLost) {
  posted.ClearHandlers();
  posted.Post(1, 0);
  Ask("a");
  RunLoop();
  EXPECT_TRUE(handled.empty());
  std::vector<std::string> late;
  posted.SetHandlers({[&late](uint32_t, uint64_t) { late.push_back("n"); },
                      [&late](LogRequest) { late.push_back("r"); }, nullptr});
  RunLoop();
  EXPECT_EQ(late, (std::vector<std::string>{"n", "r"}));
}

TEST_F(Posted, ManyOfThemLetTheWindowAnswerInBetween) {
  constexpr int kCount = 20000;
  handled.reserve(size_t{2} * kCount);
  std::thread job([this] {
    for (int i = 0; i < kCount; ++i) {
      Ask(std::to_string(i));
    }
  });
  job.join();
  onRequest = [](const std::string&) {
    QElapsedTimer busy;
    busy.start();
    while (busy.nsecsElapsed() < 10000) {
    }
  };
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&ticks] { ++ticks; });
  timer.start(0);
  ASSERT_TRUE(QTest::qWaitFor([this] { return handled.size() == size_t{2} * kCount; }, 20000));
  EXPECT_GE(ticks, 8);
  for (int i = 0; i < kCount; ++i) {
    ASSERT_EQ(handled[size_t{2} * static_cast<size_t>(i)], "begin " + std::to_string(i));
  }
}

}  // namespace
}  // namespace velkor
