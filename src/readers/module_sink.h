#pragma once

#include <cstdint>
#include <string_view>

#include "readers/header_line.h"
#include "readers/runtime_call_table.h"

namespace velkor {

// A function as the code information block and the lines before it describe it. Refers to the
// parser's own data: valid during the call that hands it over.
struct ModuleFunction {
  std::string_view name;  // the assembler symbol
  bool isStatic = false;
  bool presetMargin = false;
  uint32_t stackFigure = 0;  // as printed; kOverSize above kSizeLimit
  StkRuntimeCallTable& runtimeCalls;
};

// What the parser of a module tells, in the order of the lines.
class ModuleSink {
 public:
  virtual ~ModuleSink() = default;
  // False: the module is refused, and why has been reported.
  virtual bool AcceptHeader(const HeaderLine& header) = 0;
  // Before the first function.
  virtual void SetSourceFile(std::string_view fileName) = 0;
  virtual void AddFunction(const ModuleFunction& function) = 0;
  // Of the function added last.
  virtual void AddCallee(std::string_view name) = 0;
  virtual void AddIndirectCall() = 0;
};

}  // namespace velkor
