#pragma once

#include <cstdint>

#include "core/chain_walk.h"

namespace velkor {

// The number of chains to expect from start, at most kMaxChainCount. All mode: the chain count that
// the computation keeps. Maximum mode: exactly what WalkChains produces, in time linear in
// functions and calls where no recursion is followed; among functions that reach each other the
// chains have to be walked, since what ends one depends on how it came there. Where that takes
// more than a few million steps the answer is kMaxChainCount.
int32_t CountChains(const StkFunction& start, ChainMode mode);

}  // namespace velkor
