#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/function.h"
#include "core/slot_index.h"

namespace velkor {

// Finds the records of one table by name. The records of one name form a chain in insertion
// order; the few records of an ordinary name are looked at one by one, and a name that stands in
// very many files is indexed by file and by base name as well.
//
// A record's flags may still change between its insertion and the next lookup of its name, so
// they are read by lookups only. That is also why lookups are not const.
class FunctionNameIndex {
 public:
  using Functions = std::vector<std::unique_ptr<StkFunction>>;

  FunctionNameIndex(const CodePage& codePage, const Functions& functions)
      : codePage_(codePage), functions_(functions) {}

  // The last record of the table.
  void Append();
  void Clear();

  // Each answers none when nothing fits.
  StkFunction* FindCallee(std::string_view name, const StkFileEntry* callerFile);
  StkFunction* FindUnqualified(std::string_view name);
  StkFunction* FindStatic(std::string_view name, std::string_view fileBaseName);

 private:
  struct Link {
    uint32_t next;  // of the same name; the last one leads to the first
    uint32_t hash;
  };

  struct IgnoringCase {
    const CodePage* codePage;
    size_t operator()(std::string_view text) const { return codePage->HashIgnoreCase(text); }
    bool operator()(std::string_view left, std::string_view right) const {
      return codePage->EqualIgnoreCase(left, right);
    }
  };

  struct InFile {
    StkFunction* firstStatic = nullptr;
    StkFunction* firstGlobal = nullptr;
  };

  // What is known of a name with many records; of those up to last.
  struct Crowd {
    explicit Crowd(const CodePage& codePage)
        : staticByBaseName(0, IgnoringCase{&codePage}, IgnoringCase{&codePage}) {}

    uint32_t last = kNone;
    StkFunction* firstGlobal = nullptr;
    StkFunction* firstUnknown = nullptr;
    std::unordered_map<const StkFileEntry*, InFile> files;
    std::unordered_map<std::string_view, StkFunction*, IgnoringCase, IgnoringCase> staticByBaseName;
  };

  static constexpr uint32_t kNone = 0xFFFFFFFF;

  const uint32_t* FindLast(std::string_view name, uint32_t hash) const;
  // The records of the name; none when they are a crowd.
  template <typename Visit>
  bool VisitFew(uint32_t last, Visit visit) const;
  Crowd& CrowdOf(uint32_t last);
  void Classify(Crowd& crowd, StkFunction& function) const;

  const CodePage& codePage_;
  const Functions& functions_;
  SlotIndex lastOfName_;
  std::vector<Link> links_;                     // by record
  std::unordered_map<uint32_t, Crowd> crowds_;  // by the first record of their name
};

}  // namespace velkor
