#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace velkor {

// U+FFFD: stands for what has no character in Unicode.
constexpr char16_t kReplacementCharacter = 0xFFFD;

// The host's own conversion from one character set to another. Used by one thread at a time;
// opening one is cheap after the first of its kind.
class CharsetConverter {
 public:
  enum class Outcome {
    kConverted,
    kNoSuchCharacter,  // malformed, or without a place in the target set
    kIncomplete,       // the text ends inside a character
  };

  CharsetConverter(const std::string& from, const std::string& to);
  ~CharsetConverter();
  CharsetConverter(const CharsetConverter&) = delete;
  CharsetConverter& operator=(const CharsetConverter&) = delete;

  // False when the host does not know one of the two sets; nothing converts then.
  bool IsOpen() const { return conversion_ != nullptr; }
  // Appends the converted text to result; after another outcome than kConverted, perhaps a part.
  Outcome Append(std::string_view text, std::string& result);

 private:
  struct Conversion;

  std::unique_ptr<Conversion> conversion_;
};

}  // namespace velkor
