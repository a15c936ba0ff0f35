#pragma once

#include <optional>

#include "readers/tarn/compiler_info.h"
#include "readers/tarn/name_set.h"

namespace velkor {

// What the first accepted module of an analysis decides for the later ones, and for the tables
// that apply. Written while modules are entered, by the thread that enters them.
struct AcceptedCompiler {
  StkCompilerInfo info;
  std::optional<RuntimeNameSet> runtimeNames;  // none before there is an accepted module
};

}  // namespace velkor
