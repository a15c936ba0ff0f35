#include "readers/tarn/header_line.h"

namespace velkor {

namespace {

constexpr CharacterSet kSpace{" "};

// One arbitrary character, then digit.digit digit; 0 for anything else.
uint32_t ParseVersion(std::string_view word) {
  const auto digitAt = [word](size_t position, uint32_t& digit) {
    digit = static_cast<uint32_t>(word[position]) - '0';
    return digit <= 9;
  };
  uint32_t major = 0;
  uint32_t tenths = 0;
  uint32_t hundredths = 0;
  if (word.size() < 5 || word[2] != '.' || !digitAt(1, major) || !digitAt(3, tenths) ||
      !digitAt(4, hundredths)) {
    return 0;
  }
  return major << 8 | tenths << 4 | hundredths;
}

}  // namespace

std::optional<HeaderLine> ParseHeaderLine(StkLineScanner& line) {
  HeaderLine header;
  if (!line.Expect(';') || !line.SkipBlanks() || !line.Token(kSpace, header.family) ||
      header.family.empty()) {
    return std::nullopt;
  }
  std::string_view version;
  if ((!line.Match(" Series C Compiler") && !line.Match(" C Compiler")) || !line.SkipBlanks() ||
      !line.Token(kBlanks, version)) {
    return std::nullopt;
  }
  header.version = ParseVersion(version);
  if (header.version == 0 || !line.SkipBlanks() || !line.Match("Assembler Source")) {
    return std::nullopt;
  }
  return header;
}

}  // namespace velkor
