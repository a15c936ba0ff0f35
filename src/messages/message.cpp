#include "messages/message.h"

namespace velkor {

namespace {

constexpr uint32_t kFirstCodedKey = 40000;
constexpr uint32_t kFirstCodeNumber = 9300;
constexpr uint32_t kKeysOfALetter = 100;

// The key whose number is that of the message's code.
uint32_t CodedKey(MessageKey key) {
  return static_cast<uint32_t>(key == MessageKey::kW9432NoLine ? MessageKey::kW9432 : key);
}

// '\0' for a message without a code.
char CodeLetter(uint32_t key) {
  constexpr char kLetters[] = {'E', 'W', 'I'};
  const uint32_t letter = (key - kFirstCodedKey) / kKeysOfALetter;
  return key >= kFirstCodedKey && letter < sizeof kLetters ? kLetters[letter] : '\0';
}

}  // namespace

std::string StkMessage::Code() const {
  const uint32_t coded = CodedKey(key);
  const char letter = CodeLetter(coded);
  return letter == '\0' ? std::string()
                        : letter + std::to_string(coded - kFirstCodedKey + kFirstCodeNumber);
}

Severity StkMessage::GetSeverity() const {
  switch (CodeLetter(CodedKey(key))) {
    case 'E':
      return Severity::kError;
    case 'W':
      return Severity::kWarning;
    default:
      return Severity::kInformation;
  }
}

}  // namespace velkor
