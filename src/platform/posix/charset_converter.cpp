#include "platform/charset_converter.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <iconv.h>

namespace velkor {

struct CharsetConverter::Conversion {
  explicit Conversion(iconv_t opened) : descriptor(opened) {}
  ~Conversion() { iconv_close(descriptor); }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  iconv_t descriptor;
};

CharsetConverter::CharsetConverter(const std::string& from, const std::string& to) {
  auto* const descriptor = iconv_open(to.c_str(), from.c_str());
  if (reinterpret_cast<intptr_t>(descriptor) != -1) {
    conversion_ = std::make_unique<Conversion>(descriptor);
  }
}

CharsetConverter::~CharsetConverter() = default;

CharsetConverter::Outcome CharsetConverter::Append(std::string_view text, std::string& result) {
  if (!IsOpen()) {
    return Outcome::kNoSuchCharacter;
  }
  auto* const descriptor = conversion_->descriptor;
  constexpr auto kFailed = static_cast<size_t>(-1);
  auto* input = const_cast<char*>(text.data());
  size_t inputLeft = text.size();
  char buffer[256];
  bool flushing = false;
  iconv(descriptor, nullptr, nullptr, nullptr, nullptr);
  while (true) {
    char* output = buffer;
    size_t outputLeft = sizeof buffer;
    // The last call has no input: some sets hold a letter back until its accent has come.
    const size_t converted = iconv(descriptor, flushing ? nullptr : &input,
                                   flushing ? nullptr : &inputLeft, &output, &outputLeft);
    const int error = converted == kFailed ? errno : 0;
    result.append(buffer, static_cast<size_t>(output - buffer));
    if (error == EINVAL) {
      return Outcome::kIncomplete;
    }
    if (error != 0 && error != E2BIG) {
      return Outcome::kNoSuchCharacter;
    }
    if (error == 0 && flushing) {
      return Outcome::kConverted;
    }
    flushing = flushing || error == 0;
  }
}

}  // namespace velkor
