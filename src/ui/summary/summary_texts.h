#pragma once

#include <cstdint>

#include "ui/commands/commands.h"

namespace velkor::ui {

// The texts of the summary, by their catalogue keys.
enum SummaryText : uint32_t {
  kSummaryName = kDialogTextKey * 511 + 1,
  kNeedsName,
  kWantedName,
  kNeedsHeaders = kDialogTextKey * 511 + 11,  // three, one after the other
  kWantedHeaders = kDialogTextKey * 511 + 14,
  kStacksGroup = kDialogTextKey * 511 + 21,
  kEntriesGroup,
  kWantedGroup,
  kFindingsGroup,
  kNotesGroup,
  kLeadBound = kDialogTextKey * 511 + 31,
  kLeadAtLeast,
  kLeadNoFunctions,
  kLeadWorking,
  kLeadNothing,
  kValueTexts = kDialogTextKey * 511 + 41,  // one a kind of reason
  kFreesTogether = kDialogTextKey * 511 + 46,
  kFreesAbove,
  kMoreRows,
  kNeedOfSize = kDialogTextKey * 511 + 51,
  kSizeNotKnown,
  kStackStates = kDialogTextKey * 500 + 1041,  // one a state, as the log has them
};

}  // namespace velkor::ui
