#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "files/spec_reader.h"

namespace velkor {

// Whether an entry of "load" names a table of statements and no file: it begins with "velkor:".
bool IsStatementTable(std::string_view name);
// The table of that name; none where there is no such one.
std::optional<std::string_view> StatementTable(std::string_view name);

// Reads a table of statements on the functions of a library, which velkor brings. A line is one of
// a specification file, but its names stand for every function of that name, and clone of it, that
// was read from the linked program: functions of another source, and those of which something is
// stated already, are left alone. Of the names behind CALL= those count that the program holds; a
// line of which none does states nothing. With UNLESS=name it states nothing either where the
// program holds that function.
class LibraryStatements : public StkSpecReader {
 public:
  // text: outlives it.
  LibraryStatements(std::string name, std::string_view text, Host& host, StkReporter& reporter)
      : StkSpecReader(SpecificationKind::kStatementTable, std::move(name), host, reporter),
        text_(text) {}

  std::unique_ptr<StkByteSource> Open(const FileSystem::GiveUp& giveUp) override;
  // A line that is none of a table makes the table end there: false.
  bool ParseLine(StkFunctionTable& table, uint32_t lineNumber, std::string_view text,
                 uint64_t length, Event& stopEvent) override;

 protected:
  bool IsOfInput() const override { return true; }

 private:
  const StkFunctionList& Named(const StkFunctionTable& table, std::string_view name);

  const std::string_view text_;
  bool isIndexed_ = false;
  std::unordered_map<std::string_view, StkFunctionList> byName_;  // without a clone's ending
};

}  // namespace velkor
