#pragma once

#include <string_view>

#include "core/reason.h"

namespace velkor::reports {

// What functions lack, before their names: "unknown", "indirect calls without callees".
std::string_view ReasonWords(ReasonKind kind);

}  // namespace velkor::reports
