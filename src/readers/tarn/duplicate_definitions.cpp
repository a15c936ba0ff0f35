#include "readers/tarn/duplicate_definitions.h"

#include <string_view>
#include <unordered_map>

#include "core/function_text.h"

namespace velkor {

namespace {

StkNote NoteOf(const StkFunction& first, const StkFunction& second, const CodePage& codePage,
               const StkMessages& messages) {
  return {.rule = "duplicate-definition",
          .text = messages.FormatMessageText(
              MessageKey::kNoteDuplicateDefinition,
              {FunctionSpecName(first, codePage), FrameSizeText(first), first.file->name,
               FrameSizeText(second), second.file->name}),
          .file = second.file->name,
          .line = 0,
          .function = second.index};
}

}  // namespace

void NoteDuplicateDefinitions(const StkFunctionTable& functions, const StkMessages& messages,
                              std::vector<StkNote>& notes) {
  constexpr uint32_t kGlobal = FN_DEFINED | FN_GLOBAL;
  std::unordered_map<std::string_view, const StkFunction*> firsts;
  for (const StkFunction* function : functions.Functions()) {
    if ((function->flags & kGlobal) != kGlobal || !functions.SharesName(*function)) {
      continue;
    }
    const auto [first, isFirst] = firsts.emplace(function->name, function);
    if (!isFirst) {
      notes.push_back(NoteOf(*first->second, *function, functions.GetCodePage(), messages));
    }
  }
}

}  // namespace velkor
