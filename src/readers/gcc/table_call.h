#pragma once

#include <string>

#include "readers/configuration.h"

namespace velkor {

// It is stated that a function calls whatever functions an object of the program points to.
struct TableCall {
  std::string function;  // its symbol
  std::string table;     // that of the object
  TextPlace place;       // where it is stated
};

}  // namespace velkor
