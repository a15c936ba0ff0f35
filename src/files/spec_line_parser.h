#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/function_table.h"
#include "core/specification_source.h"
#include "files/spec_language.h"
#include "files/spec_names.h"
#include "messages/catalogue.h"
#include "messages/note.h"

namespace velkor {

// One line of a stack size specification file, checked against the function table, which it only
// reads. What the line states takes effect elsewhere. Used once, where it was made.
class SpecLineParser {
 public:
  static constexpr uint32_t kMaxCallees = 1024;

  struct Context {
    const StkFunctionTable& table;
    SpecNames& names;  // of the table
    SpecificationKind kind;
    const std::string& path;
    uint32_t lineNumber;
    const StkMessages& messages;
  };

  SpecLineParser(const Context& context, std::string_view text);

  // False when the line has an error.
  bool Parse();

  // Without text where the line names a function that is not there and no user is told.
  const StkMessage& Error() const { return error_; }

  // The name, as written, for which an error found no function; else empty.
  std::string_view Missing() const { return missing_; }

  // None for an empty line and a comment. Also with an error behind the function's name.
  StkFunction* Function() const { return function_; }
  // Not empty: the line names a function that is gone, and holds for these clones of it, the first
  // of which is Function().
  const StkFunctionList& Clones() const { return clones_; }
  // The function's name as written.
  std::string_view Name() const { return name_; }
  // At least one attribute was accepted. A callee that the function has already counts for none.
  bool AttributeSeen() const { return attributeSeen_; }
  uint32_t Margin() const { return margin_; }
  uint32_t Depth() const { return depth_; }
  bool StatesSomething() const { return attributeSeen_ || !directCallees_.empty(); }
  // In the order in which they were first met, without repetition.
  const StkFunctionList& Callees() const { return callees_; }
  // Those that the function calls directly.
  const StkFunctionList& DirectCallees() const { return directCallees_; }
  // Of a line without error: what was perhaps not meant as it was read.
  const std::vector<StkNote>& Notes() const { return notes_; }

 private:
  struct Keyword;

  bool ParseFunction();
  bool ParseAttribute();
  bool ReadMargin();
  bool ReadDepth();
  bool ReadCallee();
  // False after an error of the name.
  bool CheckName(const SpecName& name, MessageKey unclosedBracket);
  StkFunction* Find(const SpecName& name);
  StkFunctionList FindClones(const SpecName& name);
  void AddCallee(StkFunction& callee);
  void NoteAmbiguity(const SpecName& name, const StkFunction& taken);
  void NoteIfOdd(std::string_view keyword, std::string_view value, size_t digits, uint32_t number);
  bool IsDirectCallee(const StkFunction& callee) const;

  bool Fail(MessageKey key);
  bool Fail(MessageKey key, std::string_view argument);
  bool FailMissing(MessageKey key, std::string_view name);
  MessageKey FormatError() const;

  const Context context_;
  const CodePage& codePage_;
  SpecLineScanner line_;
  bool afterCall_ = false;  // the value read last was a callee's name
  StkMessage error_;
  std::string_view missing_;
  std::vector<StkNote> notes_;

  StkFunction* function_ = nullptr;
  StkFunctionList clones_;
  std::string_view name_;
  bool attributeSeen_ = false;
  uint32_t margin_ = kNoMargin;
  uint32_t depth_ = kNoDepth;
  uint32_t callCount_ = 0;
  StkFunctionList callees_;
  StkFunctionList directCallees_;
  std::unordered_set<const StkFunction*> calleeSet_;  // asked, never walked
};

}  // namespace velkor
