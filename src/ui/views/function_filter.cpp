#include "ui/views/function_filter.h"

#include <QStringList>
#include <algorithm>

#include "core/function_text.h"
#include "ui/shown_text.h"

namespace velkor::ui {

namespace {

std::optional<uint32_t> NumberOf(QStringView text) {
  bool isNumber = false;
  const uint number = text.toUInt(&isNumber);
  return isNumber ? std::optional<uint32_t>(number) : std::nullopt;
}

bool HasTotal(const StkFunction& function) {
  return function.adjustment || function.Is(FN_DEFINED | FN_LIBRARY) ||
         function.totalStackSize == kOverSize;
}

}  // namespace

FunctionFilter::FunctionFilter(const QString& text, const CodePage& codePage)
    : codePage_(codePage) {
  const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
  words_.reserve(static_cast<size_t>(words.size()));
  for (const QString& word : words) {
    const QStringView rest = QStringView(word).mid(1);
    words_.push_back({.text = word,
                      .number = NumberOf(word),
                      .over = word.startsWith(u'>') ? NumberOf(rest) : std::nullopt,
                      .under = word.startsWith(u'<') ? NumberOf(rest) : std::nullopt,
                      .isOfWholeName = word.contains(u'#') || word.contains(u'[') ||
                                       word.contains(u']') || word.contains(u'*') ||
                                       word.contains(u'&'),
                      .files = {}});
  }
}

bool FunctionFilter::Fits(const StkFunction& function) {
  return std::ranges::all_of(words_, [&](Word& word) { return Fits(function, word); });
}

bool FunctionFilter::Fits(const StkFunction& function, Word& word) const {
  if (word.over && HasTotal(function) && function.totalStackSize > *word.over) {
    return true;
  }
  if (word.under && HasTotal(function) && function.totalStackSize < *word.under) {
    return true;
  }
  if (word.number && ((HasTotal(function) && function.totalStackSize == *word.number) ||
                      (function.Is(FN_DEFINED) && function.frameSize == *word.number) ||
                      function.Place().line == *word.number)) {
    return true;
  }
  const QString name = word.isOfWholeName
                           ? ForScreen(FunctionDisplayName(function, codePage_), codePage_)
                           : ForScreen(CName(function), codePage_);
  return name.contains(word.text, Qt::CaseInsensitive) || FitsFile(function.file, word);
}

bool FunctionFilter::FitsFile(const StkFileEntry* file, Word& word) const {
  if (!file) {
    return false;
  }
  const auto [known, isNew] = word.files.try_emplace(file, false);
  if (isNew) {
    known->second = ForScreen(file->name, codePage_).contains(word.text, Qt::CaseInsensitive);
  }
  return known->second;
}

}  // namespace velkor::ui
