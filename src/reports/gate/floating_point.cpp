#include "reports/gate/floating_point.h"

namespace velkor::reports {

bool FloatingPoint::MayBeUsed(const std::vector<uint32_t>& /*functions*/) {
  return true;
}

}  // namespace velkor::reports
