#pragma once

#include <string>

#include "core/specification_source.h"

namespace velkor::testing {

// A specification source that was read before. Its answer so far is Ignore unless stated, so that
// the stop question is logged and nobody is asked.
struct TestSource : SpecificationSource {
  explicit TestSource(SpecificationKind of, StopAnswer soFar = StopAnswer::kIgnore)
      : kind(of), answer(soFar) {}

  SpecificationKind Kind() const override { return kind; }
  const std::string& Path() const override { return path; }
  StopAnswer Answer() const override { return answer; }

  SpecificationKind kind;
  StopAnswer answer;
  std::string path = "user.txt";
};

}  // namespace velkor::testing
