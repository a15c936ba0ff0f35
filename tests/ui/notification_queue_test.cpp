#include "ui/notification_queue.h"

#include <QEventLoop>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velkor::ui {
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
                        [this] { handled.emplace_back("request"); }, nullptr});
  }
  static void RunLoop() {
    QEventLoop loop;
    QTimer::singleShot(30, &loop, &QEventLoop::quit);
    loop.exec();
  }

  NotificationQueue posted;
  std::vector<std::string> handled;
  std::function<void(uint32_t)> onNotification;
};

TEST_F(Posted, RequestsWaitForABoxOfTheUserInterface) {
  {
    const NotificationQueue::Hold outer(posted);
    {
      const NotificationQueue::Hold inner(posted);
      posted.PostRequest();
      posted.Post(1, 0);
      RunLoop();
    }
    RunLoop();
    EXPECT_EQ(handled, std::vector<std::string>{"n1"});
    EXPECT_TRUE(posted.IsHeld());
  }
  RunLoop();
  EXPECT_EQ(handled, (std::vector<std::string>{"n1", "request"}));
}

TEST_F(Posted, ANotificationIsNeverHandledInsideAnother) {
  onNotification = [this](uint32_t message) {
    if (message == 1) {
      posted.Post(2, 0);
      posted.PostRequest();
      RunLoop();
      posted.HandleAll();
      handled.push_back("end n1");
    }
  };
  posted.Post(1, 0);
  RunLoop();
  RunLoop();
  EXPECT_EQ(handled, (std::vector<std::string>{"n1", "end n1", "n2", "request"}));
}

TEST_F(Posted, NothingIsHandledWithoutHandlersOrLost) {
  posted.ClearHandlers();
  posted.Post(1, 0);
  posted.PostRequest();
  RunLoop();
  EXPECT_TRUE(handled.empty());
  std::vector<std::string> late;
  posted.SetHandlers({[&late](uint32_t, uint64_t) { late.push_back("n"); },
                      [&late] { late.push_back("r"); }, nullptr});
  RunLoop();
  EXPECT_EQ(late, (std::vector<std::string>{"n", "r"}));
}

}  // namespace
}  // namespace velkor::ui
