#include "core/detail/function_total.h"

namespace velkor {

namespace {

OwnSize Adjusted(const StkFunction& function, uint32_t margin, uint32_t depth) {
  return {.frameSize = function.frameSize,
          .margin = margin == kNoMargin ? 0 : margin,
          .depth = function.Is(FN_RECURSIVE) && depth != kNoDepth ? depth : 1};
}

}  // namespace

OwnSize OwnSizeOf(const StkFunction& function) {
  if (const StkAdjustment* pending = function.pendingAdjustment.get()) {
    return Adjusted(function, pending->margin, pending->depth);
  }
  if (const StkAppliedAdjustment* applied = function.adjustment.get()) {
    return Adjusted(function, applied->margin, applied->depth);
  }
  return {.frameSize = function.frameSize,
          .margin = function.Is(FN_LIBRARY | FN_FIXED_EXTRA) ? function.librarySize : 0};
}

uint32_t TotalOf(const OwnSize& own, uint32_t maxCalleeSize, uint32_t sizeLimit) {
  uint64_t total = uint64_t{own.frameSize} + maxCalleeSize;
  if (total > sizeLimit) {
    return kOverSize;
  }
  total += own.margin;
  if (total > sizeLimit) {
    return kOverSize;
  }
  total *= own.depth;  // far from 64 bits
  return total > sizeLimit ? kOverSize : static_cast<uint32_t>(total);
}

}  // namespace velkor
