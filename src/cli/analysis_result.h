#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/function_table.h"
#include "messages/message.h"

namespace velkor {

// A finished analysis, as the outputs need it. Texts are bytes of the code page.
struct AnalysisResult {
  const CodePage& codePage;
  std::string project;
  std::string compilerName;
  std::optional<std::string> compilerVersion;  // none: no module was accepted
  const std::vector<StkMessage>& log;
  const StkFunctionTable& functions;
  const StkFunctionList& roots;
  std::vector<bool> complete;  // by function index: the total is no mere lower bound

  bool IsComplete(const StkFunction& function) const { return complete[function.index]; }
  std::string Utf8(std::string_view text) const { return codePage.ToUtf8(text); }
};

}  // namespace velkor
