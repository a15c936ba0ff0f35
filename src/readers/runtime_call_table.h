#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velkor {

// The runtime helpers that the code under each label of one module calls. Each distinct helper
// has a number, counted from 0 in the order of first mention.
class StkRuntimeCallTable {
 public:
  void AddHelper(std::string_view label, std::string_view helper);
  // All helpers that the stub calls so far, in its order; nothing when it calls none. Takes
  // constant time: only which stub, and up to where, is kept.
  void AddStub(std::string_view label, std::string_view stub);

  bool CallsHelpers(std::string_view label) const;
  // Lines under the label by which "cprep2" is called.
  uint32_t Cprep2Count(std::string_view label) const;
  // The numbers of the label's helpers in the order of their first call, each once. Valid until
  // the next call; linear in the lines that added them.
  const std::vector<uint32_t>& Helpers(std::string_view label);
  std::string_view HelperName(uint32_t helper) const { return *helperNames_[helper]; }

 private:
  struct Call {
    uint32_t number;     // of a helper, or of a stub's entry
    uint32_t stubCalls;  // a stub: how many of its calls are meant
    bool isStub;
  };
  struct Entry {
    std::vector<Call> calls;
    uint32_t cprep2Count = 0;
  };
  struct Position {
    uint32_t entry;
    uint32_t end;
  };
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };
  using NumberOfName = std::unordered_map<std::string, uint32_t, Hash, std::equal_to<>>;

  const Entry* Find(std::string_view label) const;
  uint32_t EntryNumber(std::string_view label);
  uint32_t HelperNumber(std::string_view helper);
  void List(uint32_t entry);

  NumberOfName entryNumbers_;
  std::vector<Entry> entries_;
  std::string lastLabel_;
  uint32_t lastEntry_ = 0;  // of lastLabel_, when there are entries

  NumberOfName helperNumbers_;
  std::vector<const std::string*> helperNames_;  // keys of helperNumbers_

  // While the helpers of one label are listed.
  std::vector<uint32_t> listed_;
  std::vector<bool> isListed_;      // by helper
  std::vector<uint32_t> followed_;  // by entry: its calls before this one are listed already
};

}  // namespace velkor
