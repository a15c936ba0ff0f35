#pragma once

#include <QString>
#include <optional>
#include <unordered_map>
#include <vector>

#include "core/function.h"
#include "platform/code_page.h"

namespace velkor::ui {

// What functions are looked for by: words, of which each has to fit. A word fits a function when it
// is a part of its name or of its file's path, whatever the letter case, or when it is the number
// of its total, its frame or its line; ">N" and "<N" fit totals that are larger or smaller. No word
// fits all. Used by one thread.
class FunctionFilter {
 public:
  FunctionFilter(const QString& text, const CodePage& codePage);

  bool IsEmpty() const { return words_.empty(); }
  bool Fits(const StkFunction& function);

 private:
  struct Word {
    QString text;
    std::optional<uint32_t> number;  // the text is one
    std::optional<uint32_t> over;    // it is ">" and one
    std::optional<uint32_t> under;   // it is "<" and one
    bool isOfWholeName = false;      // it has signs that only stand around names
    std::unordered_map<const StkFileEntry*, bool> files;  // whether it is a part of the path
  };

  bool Fits(const StkFunction& function, Word& word) const;
  bool FitsFile(const StkFileEntry* file, Word& word) const;

  const CodePage& codePage_;
  std::vector<Word> words_;
};

}  // namespace velkor::ui
