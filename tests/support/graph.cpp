#include "support/graph.h"

#include <gtest/gtest.h>
#include <sstream>
#include <vector>

namespace velkor::testing {

namespace {

struct Line {
  StkFunction* function;
  std::vector<std::string> extraCallees;
};

Line ReadLine(Graph& graph, std::istringstream& words) {
  std::string word;
  words >> word;
  Line line{};
  if (word == "?") {
    words >> word;
    line.function = &graph.functions.AddUnknown("_" + word);
    return line;
  }
  const bool isStatic = word == "static";
  if (isStatic) {
    words >> word;
  }
  StkFunction& function =
      graph.functions.AddDefined("_" + word, graph.files.Intern("C:\\p\\" + word + ".c"));
  function.flags |= isStatic ? 0u : static_cast<uint32_t>(FN_GLOBAL);
  words >> function.frameSize;
  line.function = &function;
  bool extra = false;
  while (words >> word) {
    if (word == "->" || word == "=>") {
      extra = word == "=>";
      if (extra) {
        graph.functions.PutInForce(function, {});
      }
    } else if (extra) {
      line.extraCallees.push_back(word);
    } else {
      graph.functions.AddCallName(function, "_" + word);
    }
  }
  return line;
}

}  // namespace

Graph::Graph(std::string_view text, CodePage page, size_t threads)
    : codePage(std::move(page)), functions(codePage, {}, threads) {
  std::istringstream lines{std::string(text)};
  std::string lineText;
  std::vector<Line> read;
  while (std::getline(lines, lineText)) {
    if (lineText.find_first_not_of(" \t") != std::string::npos) {
      std::istringstream words(lineText);
      read.push_back(ReadLine(*this, words));
    }
  }
  functions.ResolveAllCalls();
  for (const Line& line : read) {
    for (const std::string& name : line.extraCallees) {
      StkFunction& callee = functions.ResolveCall(*line.function, "_" + name);
      line.function->extraCallees.push_back(&callee);
    }
  }
}

StkFunction& Graph::operator[](std::string_view cName) {
  const std::string symbol = "_" + std::string(cName);
  for (const auto& function : functions.Functions()) {
    if (function->name == symbol) {
      return *function;
    }
  }
  ADD_FAILURE() << "no function " << cName;
  return *functions.Functions().front();
}

}  // namespace velkor::testing
