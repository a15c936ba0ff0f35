#pragma once

#include <functional>
#include <string>

#include "messages/reporter.h"
#include "platform/host.h"
#include "reports/result_output.h"

namespace velkor::reports {

// Writes a result to a file of the user's choice: beside one that is there, whose place it takes
// when it is whole. False after a warning. The caller has found out that the path may be written
// to.
bool WriteResultFile(const std::string& path, Host& host, StkReporter& reporter,
                     const std::function<void(ResultOutput&)>& write);

}  // namespace velkor::reports
