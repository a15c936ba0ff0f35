#pragma once

#include <QApplication>

namespace velkor::testing {

// The one application object of the test program, made when first asked for and destroyed after
// the last test.
QApplication& TestApplication();

}  // namespace velkor::testing
