#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/function_table.h"
#include "core/root_list.h"
#include "files/spec_reader.h"
#include "messages/reporter.h"

namespace velkor {

struct SystemFileMerge {
  bool read = false;     // no line of the file is erroneous
  bool whole = false;    // everything that the file states is in force, or replaced by one's own
  bool changed = false;  // adjustments in force
  bool calleesChanged = false;
  std::vector<StaleStatement> stale;  // lines to keep
};

// Puts in force what another program has written into the stk system file since it was last read or
// written here. The functions of own have been adjusted or cancelled here since: what is in force
// of them came last, and stays. Every other function is adjusted as the file states, and its
// adjustment cancelled where the file states none; each is logged. A file with an erroneous line
// changes nothing; lines that name functions which are not there are handed back. Recomputes the
// totals. User-interface thread.
SystemFileMerge MergeSystemFile(std::string_view text, const std::string& path,
                                const std::unordered_set<const StkFunction*>& own,
                                StkFunctionTable& functions, StkRootList& roots,
                                StkReporter& reporter);

}  // namespace velkor
