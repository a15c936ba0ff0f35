#pragma once

#include <string_view>

#include "core/recompute.h"
#include "support/graph.h"
#include "support/recorder.h"

namespace velkor::testing {

// A graph from text with its totals, recursion marks and top-level functions.
struct ComputedGraph : Graph {
  explicit ComputedGraph(std::string_view text, CodePage page = CodePage::Utf8(),
                         size_t threads = 1)
      : Graph(text, std::move(page), threads), recorder(codePage) {
    Recompute(functions, roots, true, nullptr, nullptr, recorder.reporter);
  }
  void Adjust(std::string_view cName, uint32_t margin, uint32_t depth = kNoDepth) {
    StkFunction& function = (*this)[cName];
    functions.PutInForce(function, {margin, depth});
    Recompute(functions, roots, false, nullptr, nullptr, recorder.reporter);
  }
  void SetLibrarySize(std::string_view cName, uint32_t size) {
    functions.SetLibrarySize((*this)[cName], size);
    Recompute(functions, roots, false, nullptr, nullptr, recorder.reporter);
  }

  Recorder recorder;
  StkRootList roots;
};

}  // namespace velkor::testing
