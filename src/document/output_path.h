#pragma once

#include <string>
#include <vector>

#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

// The programs, and what is installed with them: no output may take their place.
std::vector<std::string> ProgramFiles(Host& host);

// Whether a job may write to the path. False after W9407 (more than 255 characters) or W9402 (it
// is one of the inputs, under whatever name). Any thread.
bool CheckOutputPath(const std::string& path, const std::vector<std::string>& inputs, Host& host,
                     StkReporter& reporter);

}  // namespace velkor
