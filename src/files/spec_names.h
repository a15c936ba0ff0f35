#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/function_table.h"
#include "files/spec_language.h"

namespace velkor {

// The names by which a specification file knows the functions of one table. Where quotes or the
// folder of a file stand in a name it means one function or none; other names mean the first that
// they fit. Keeps what it has learnt of the table, whose functions must stay as they are. One
// thread at a time.
class SpecNames {
 public:
  explicit SpecNames(const StkFunctionTable& table) : table_(table) {}
  SpecNames(const SpecNames&) = delete;
  SpecNames& operator=(const SpecNames&) = delete;

  // None for a name that means nothing.
  StkFunction* Find(const SpecName& name);
  // The clones that a name stands for whose own function is gone: those of one function of the
  // source. Empty for any other name.
  struct BaseClones {
    StkFunctionList clones;    // in the order of the table
    bool isAmbiguous = false;  // they are only the first of several that the name fits
  };
  BaseClones FindClones(const SpecName& name);
  // The name that stands for all clones of a function that is gone, this one among them: none where
  // one of them is not among these functions, or nothing names them alone.
  std::optional<std::string> GoneBase(const StkFunction& clone,
                                      const std::unordered_set<const StkFunction*>& among);
  // found is only the first of several that the name fits.
  bool IsAmbiguous(const SpecName& name, const StkFunction& found);
  // What names this function, and no other, at the start of a line and after "CALL=": in the
  // plain form where that does. None where nothing does.
  std::optional<std::string> Statement(const StkFunction& function);
  // Whether that is this text, which is its name in the plain form.
  bool IsStatement(std::string_view plain, const StkFunction& function) {
    return IsOwnWord(plain, function) || Means(plain, function);
  }
  // The same; where nothing does, the name in the plain form.
  std::string Shown(const StkFunction& function);

 private:
  // A function with the path of its file, taken apart; the last part first.
  struct Place {
    StkFunction* function;
    std::vector<std::string_view> path;
    size_t ownParts = 1;  // as many of the path tell it from the others
  };
  using Places = std::vector<Place>;

  // The functions of one C name.
  struct Namesakes {
    Places statics;  // by path
    Places globals;
    StkFunction* undefined = nullptr;

    size_t Count() const {
      return statics.size() + globals.size() + (undefined != nullptr ? 1 : 0);
    }
  };

  struct Hash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  // Valid until the next call.
  const Namesakes& NamesakesOf(std::string_view cName);
  StkFunction* FindInFile(const SpecName& name);
  StkFunction* OnlyOne(const Places& places, std::string_view tail) const;
  bool IsInFile(const StkFunction& function, const SpecName& name) const;
  // Of a name in the plain form: what Means answers yes to without a look at the rules. Most names.
  bool IsOwnWord(std::string_view text, const StkFunction& function) const;
  static std::string_view WordIn(std::string_view text, const StkFunction& function);
  bool Means(std::string_view text, const StkFunction& function);
  std::string FurtherForm(const StkFunction& function, std::string_view functionName);
  std::string FurtherFormWithFile(const StkFunction& function, std::string_view functionName);
  std::string_view OwnTail(const StkFunction& function);
  void Arrange(Places& places) const;
  std::vector<std::string_view> Parts(std::string_view path) const;
  // Of the two paths' ends, ignoring letter case.
  int ComparePaths(const Place& left, const Place& right, size_t parts) const;

  const StkFunctionTable& table_;
  const CodePage& codePage_ = table_.GetCodePage();
  std::unordered_map<std::string, Namesakes, Hash, std::equal_to<>> several_;
  Namesakes single_;  // what was asked last, where the name is its only one's
};

}  // namespace velkor
