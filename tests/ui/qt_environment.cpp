#include "qt_environment.h"

namespace velkor::testing {

QApplication& TestApplication() {
  static int count = 1;
  static char name[] = "ui_test";
  static char* arguments[] = {name, nullptr};
  static QApplication application(count, arguments);
  return application;
}

}  // namespace velkor::testing
