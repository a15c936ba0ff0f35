#pragma once

#include <string>

#include "messages/stop_question.h"

namespace velkor {

enum class SpecificationKind {
  kUserFile,
  kLibraryTable,
  kSystemFile,
  kStatementTable,  // on functions of a library, which velkor brings
};

// What the computation asks about the file whose specifications it is about to apply.
class SpecificationSource {
 public:
  virtual ~SpecificationSource() = default;
  virtual SpecificationKind Kind() const = 0;
  virtual const std::string& Path() const = 0;
  virtual StopAnswer Answer() const = 0;
};

}  // namespace velkor
