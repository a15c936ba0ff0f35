#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "readers/tarn/name_set.h"

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
  std::string_view HelperName(uint32_t helper) const { return helpers_.Name(helper); }

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
  const Entry* Find(std::string_view label) const;
  uint32_t EntryNumber(std::string_view label);
  void List(uint32_t entry);

  StkNameSet labels_;
  std::vector<Entry> entries_;  // by label
  std::string lastLabel_;
  uint32_t lastEntry_ = 0;  // of lastLabel_, when there are entries
  StkNameSet helpers_;

  // While the helpers of one label are listed. What a round does not say of itself is not so.
  struct Followed {
    uint32_t round = 0;
    uint32_t calls = 0;  // of the entry that are listed already
  };
  std::vector<uint32_t> listed_;
  uint32_t round_ = 0;
  std::vector<uint32_t> listedIn_;  // by helper: the last round that listed it
  std::vector<Followed> followed_;  // by entry
};

}  // namespace velkor
