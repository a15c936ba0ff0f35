#include <QApplication>
#include <gtest/gtest.h>
#include <memory>

namespace velkor::ui {
namespace {

// The one application object of the test program. The toolkit does not survive one that goes with
// the static objects.
class QtEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    static int count = 1;
    static char name[] = "ui_test";
    static char* arguments[] = {name, nullptr};
    application_ = std::make_unique<QApplication>(count, arguments);
  }
  void TearDown() override { application_.reset(); }

 private:
  std::unique_ptr<QApplication> application_;
};

[[maybe_unused]] const auto* const kEnvironment =
    ::testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace
}  // namespace velkor::ui
