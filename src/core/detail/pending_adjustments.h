#pragma once

#include "core/function_table.h"
#include "core/specification_source.h"
#include "messages/reporter.h"
#include "platform/event.h"

namespace velkor {

// The pending adjustment becomes the one in force. log: post what it changes.
void ApplyPending(StkFunctionTable& table, StkFunction& function, bool log, StkReporter& reporter);

// Drops the pending recursion depths of functions that are not recursive; those of a user's file
// with W9417 and its stop question.
void CheckRecursionDepths(StkFunctionTable& table, SpecificationSource& source, Event* stopEvent,
                          StkReporter& reporter);

}  // namespace velkor
