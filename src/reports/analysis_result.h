#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/bounds.h"
#include "core/function_table.h"
#include "messages/message.h"
#include "messages/note.h"

namespace velkor::reports {

// The modules of an analysis by what became of them, named as the log names them.
struct AnalysisInputs {
  size_t read = 0;
  std::vector<std::string> missing;
  std::vector<std::string> notWhole;

  size_t Count() const { return read + missing.size() + notWhole.size(); }
};

// A finished analysis, as the outputs need it. Texts are bytes of the code page.
struct AnalysisResult {
  const CodePage& codePage;
  std::string project;
  std::string compilerName;
  std::optional<std::string> compilerVersion;  // none: no module was accepted
  AnalysisInputs inputs;
  const std::vector<StkMessage>& log;
  std::vector<StkNote> notes;
  const StkFunctionTable& functions;
  const StkFunctionList& roots;
  const StkBounds& bounds;

  std::string Utf8(std::string_view text) const { return codePage.ToUtf8(text); }
};

}  // namespace velkor::reports
