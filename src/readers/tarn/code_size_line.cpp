#include "readers/tarn/code_size_line.h"

#include "core/function.h"
#include "files/numbers.h"

namespace velkor {

std::optional<uint32_t> ParseStackFigure(StkLineScanner& line) {
  std::string_view number;
  if (!line.SeekComma() || !line.SkipSeparators() || !line.SeekComma() || !line.SkipSeparators() ||
      !line.Match("STACK_SIZE=") || !line.SkipBlanks() || !line.Token(kBlanks, number)) {
    return std::nullopt;
  }
  uint32_t figure = 0;
  const NumberResult result = ParseWholeNumber(number, 10, figure);
  const bool tooLarge =
      result == NumberResult::kTooLarge || (result == NumberResult::kOk && figure > kSizeLimit);
  if ((result != NumberResult::kOk && !tooLarge) || !line.SkipBlanks() || !line.Match("bytes")) {
    return std::nullopt;
  }
  return tooLarge ? kOverSize : figure;
}

}  // namespace velkor
