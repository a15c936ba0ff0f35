#pragma once

#include <QApplication>

namespace velkor::testing {

// The one application object of the test program, made when first asked for and never destroyed
// before the program ends.
QApplication& TestApplication();

}  // namespace velkor::testing
