#include "messages/catalogue.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/limits.h"

namespace velkor {

namespace embedded {
extern const std::string_view englishCatalogue;
extern const std::string_view japaneseCatalogue;
}  // namespace embedded

namespace {

// A message is built this far past its limit, so that the cut sees whether the character at the
// limit is whole; whatever lies further on is never looked at.
constexpr size_t kBuildLimit = kMaxTextLength + 8;

void AppendBounded(std::string& message, std::string_view text) {
  message += text.substr(0, kBuildLimit - message.size());
}

// "\n" and "\\" replaced; any other backslash stands for itself.
std::string Unescape(std::string_view text) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (text[i] == '\\' && (next == 'n' || next == '\\')) {
      result += next == 'n' ? '\n' : '\\';
      ++i;
    } else {
      result += text[i];
    }
  }
  return result;
}

std::optional<uint32_t> ReadKey(std::string_view digits) {
  uint32_t key = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, key);
  if (error != std::errc() || stop != end) {
    return std::nullopt;
  }
  return key;
}

enum class Placeholder { kText, kHiddenText, kNumber, kCharacter, kPercent };

struct PlaceholderForm {
  std::string_view form;
  Placeholder kind;
};

constexpr PlaceholderForm kPlaceholders[] = {
    {"%s", Placeholder::kText},    {"%.0s", Placeholder::kHiddenText},
    {"%lu", Placeholder::kNumber}, {"%c", Placeholder::kCharacter},
    {"%%", Placeholder::kPercent},
};

const PlaceholderForm* FindPlaceholder(std::string_view text) {
  const auto* found = std::ranges::find_if(
      kPlaceholders, [text](const PlaceholderForm& each) { return text.starts_with(each.form); });
  return found == std::end(kPlaceholders) ? nullptr : found;
}

std::optional<std::string_view> TextOf(const MessageArgument& argument) {
  if (const auto* file = std::get_if<MessageFile>(&argument)) {
    return file->path;
  }
  const auto* text = std::get_if<std::string_view>(&argument);
  return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::optional<uint32_t> NumberOf(const MessageArgument& argument) {
  if (const auto* line = std::get_if<MessageLine>(&argument)) {
    return line->number;
  }
  const auto* number = std::get_if<uint32_t>(&argument);
  return number != nullptr ? std::optional(*number) : std::nullopt;
}

void AppendArgument(std::string& message, Placeholder kind, const MessageArgument& argument) {
  const bool takesText = kind == Placeholder::kText || kind == Placeholder::kCharacter;
  if (const auto text = TextOf(argument); text && takesText) {
    AppendBounded(message, *text);
  } else if (const auto number = NumberOf(argument); number && kind == Placeholder::kNumber) {
    AppendBounded(message, std::to_string(*number));
  }
}

}  // namespace

StkMessages::StkMessages(const CodePage& codePage,
                         std::initializer_list<std::string_view> catalogues)
    : codePage_(codePage) {
  for (const std::string_view catalogue : catalogues) {
    Add(catalogue);
  }
}

void StkMessages::Add(std::string_view catalogue) {
  while (!catalogue.empty()) {
    const std::string_view line = catalogue.substr(0, catalogue.find('\n'));
    catalogue.remove_prefix(std::min(line.size() + 1, catalogue.size()));
    const size_t blank = line.find(' ');
    const std::optional<uint32_t> key = ReadKey(line.substr(0, blank));
    if (!key || blank == std::string_view::npos) {
      continue;
    }
    if (auto text = codePage_.FromUtf8(Unescape(line.substr(blank + 1)))) {
      texts_.insert_or_assign(*key, *std::move(text));
    }
  }
}

StkMessages StkMessages::English(const CodePage& codePage) {
  return {codePage, {EnglishCatalogue()}};
}

std::string_view StkMessages::EnglishCatalogue() {
  return embedded::englishCatalogue;
}

std::string_view StkMessages::JapaneseCatalogue() {
  return embedded::japaneseCatalogue;
}

std::string_view StkMessages::Text(MessageKey key) const {
  const auto found = texts_.find(static_cast<uint32_t>(key));
  return found == texts_.end() ? std::string_view() : std::string_view(found->second);
}

std::string StkMessages::FormatMessageText(MessageKey key, MessageArguments arguments) const {
  std::string message;
  const auto* argument = arguments.begin();
  std::string_view rest = Text(key);
  while (!rest.empty() && message.size() < kBuildLimit) {
    const size_t plain = std::min(rest.find('%'), rest.size());
    AppendBounded(message, rest.substr(0, plain));
    rest.remove_prefix(plain);
    const PlaceholderForm* placeholder = FindPlaceholder(rest);
    const size_t length = placeholder != nullptr ? placeholder->form.size() : rest.empty() ? 0 : 1;
    if (placeholder == nullptr || placeholder->kind == Placeholder::kPercent) {
      AppendBounded(message, rest.substr(0, 1));
    } else if (argument != arguments.end()) {
      AppendArgument(message, placeholder->kind, *argument++);
    }
    rest.remove_prefix(length);
  }
  message.resize(codePage_.CutLength(message, kMaxTextLength));
  return message;
}

StkMessage StkMessages::MakeMessage(MessageKey key, MessageArguments arguments) const {
  StkMessage message{.key = key, .text = FormatMessageText(key, arguments)};
  for (const MessageArgument& argument : arguments) {
    if (const auto* file = std::get_if<MessageFile>(&argument)) {
      message.file = file->path;
    } else if (const auto* line = std::get_if<MessageLine>(&argument)) {
      message.line = line->number;
    }
  }
  return message;
}

}  // namespace velkor
