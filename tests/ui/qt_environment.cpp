#include "qt_environment.h"

#include <gtest/gtest.h>
#include <memory>

namespace velkor::testing {

namespace {

std::unique_ptr<QApplication>& Application() {
  static std::unique_ptr<QApplication> application;
  return application;
}

// The toolkit does not survive an application object that goes with the other static ones.
class ApplicationEnd : public ::testing::Environment {
 public:
  void TearDown() override { Application().reset(); }
};

[[maybe_unused]] const auto* const kApplicationEnd =
    ::testing::AddGlobalTestEnvironment(new ApplicationEnd);

}  // namespace

QApplication& TestApplication() {
  static int count = 1;
  static char name[] = "ui_test";
  static char* arguments[] = {name, nullptr};
  if (!Application()) {
    Application() = std::make_unique<QApplication>(count, arguments);
  }
  return *Application();
}

}  // namespace velkor::testing
