#pragma once

#include <span>

#include "core/function_list.h"
#include "platform/code_page.h"

namespace velkor {

// By name in the code page's character order, case-sensitive, the leading "_" included; functions
// of equal names in table order.
void SortByName(std::span<StkFunction*> list, const CodePage& codePage);
// Before the first entry whose name is greater, else at the end. The position, or -1 when the
// function is in the list already.
int InsertByName(StkFunctionList& list, StkFunction& function, const CodePage& codePage);
// The position it had, or -1 when it was not there.
int RemoveFunction(StkFunctionList& list, const StkFunction& function);

}  // namespace velkor
