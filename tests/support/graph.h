#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/function_table.h"

namespace velkor::testing {

// A function database from a few lines of text, one function a line, in table order:
//   main 10 -> f g        a global function with its frame size and its callees
//   static f 20           a static one, of the file C:\p\f.c (the function's name and ".c")
//   ? x                   an unknown one
//   main 10 -> f => g     extra callees, as an adjustment in force would state them
// Names are C names (the symbols get a leading "_"); callees may be defined further down, and a
// callee that no line defines becomes an unknown function at the end. Callees are sorted by name and
// callers linked as after ResolveAllCalls, extra callers as before the first computation. A function with "=>" is adjusted
// (without margin and depth).
struct Graph {
  explicit Graph(std::string_view text, CodePage page = CodePage::Utf8(), size_t threads = 1);

  // By C name; fails the test when there is none.
  StkFunction& operator[](std::string_view cName);

  CodePage codePage;
  StkFileTable files{codePage};
  StkFunctionTable functions;
};

}  // namespace velkor::testing
