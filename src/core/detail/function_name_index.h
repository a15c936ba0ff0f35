#pragma once

#include <cstdint>
#include <mutex>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/function.h"

namespace velkor {

// Finds the records of one table by name. The records of one name form a chain in insertion
// order; the few records of an ordinary name are looked at one by one, and a name that stands in
// very many files is indexed by file and by base name as well. Names are known by their numbers in
// the table's NameTable.
//
// A record's flags may still change between its insertion and the next lookup of its name, so
// they are read by lookups only. That is also why lookups are not const. Several threads may look
// up at once while nothing else is done.
class FunctionNameIndex {
 public:
  FunctionNameIndex(const CodePage& codePage, const StkFunctionList& functions)
      : codePage_(codePage), functions_(functions) {}

  // The last record of the table, which has that name.
  void Append(uint32_t name);
  // Another name of a record, which calls do not use.
  void AddShown(uint32_t name, uint32_t function) { shown_[name].push_back(function); }
  void Clear();

  // Whether the name of this record is that of another one too.
  bool IsShared(uint32_t record) const { return next_[record] != record; }
  size_t CountShown(uint32_t name) const {
    const auto found = shown_.find(name);
    return found == shown_.end() ? 0 : found->second.size();
  }
  // Asks for the memory that FindCallee will read for these names.
  void FetchCallees(std::span<const uint32_t> names) const;
  // Each answers none when nothing fits, and for NameTable::kNone.
  StkFunction* FindCallee(uint32_t name, const StkFileEntry* callerFile);
  // Also by the shown name, where no record has the name itself.
  StkFunction* FindUnqualified(uint32_t name);
  StkFunction* FindStatic(uint32_t name, std::string_view fileBaseName);
  // In insertion order.
  StkFunctionList FindAll(uint32_t name) const;

 private:
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

  // The last record of the name, or kNone.
  uint32_t LastOf(uint32_t name) const {
    return name < lastOfName_.size() ? lastOfName_[name] : kNone;
  }
  // The records of the name; none when they are a crowd.
  template <typename Visit>
  bool VisitFew(uint32_t last, Visit visit) const;
  // As far as the name's records go now; made when it is first asked for, by any thread.
  const Crowd& CrowdOf(uint32_t last);
  template <typename Fits>
  StkFunction* FindShown(uint32_t name, Fits fits) const;
  bool IsStaticIn(const StkFunction& function, std::string_view fileBaseName) const;
  void Classify(Crowd& crowd, StkFunction& function) const;

  const CodePage& codePage_;
  const StkFunctionList& functions_;
  std::vector<uint32_t> lastOfName_;  // by name
  std::vector<uint32_t> next_;        // of the same name, by record; the last: the first
  std::unordered_map<uint32_t, std::vector<uint32_t>> shown_;  // records by their shown name
  std::mutex crowdsMutex_;
  std::unordered_map<uint32_t, Crowd> crowds_;  // by the first record of their name
};

}  // namespace velkor
