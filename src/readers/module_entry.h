#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "messages/reporter.h"
#include "platform/host.h"
#include "readers/module_reader.h"
#include "readers/module_sink.h"

namespace velkor {

// Enters what the parser of one module tells into the function database, and checks that the
// module comes from the compiler of this analysis.
class ModuleEntry : public ModuleSink {
 public:
  // modulePath must outlive the entry.
  ModuleEntry(const std::string& modulePath, ModuleDestination destination, Host& host,
              StkReporter& reporter);

  bool AcceptHeader(const HeaderLine& header) override;
  void SetSourceFile(std::string_view fileName) override;
  void AddFunction(const ModuleFunction& function) override;
  void AddCallee(std::string_view name) override;
  void AddIndirectCall() override;

 private:
  enum class Listed : uint8_t { kNotLookedUp, kYes, kNo };

  void AddRuntimeHelpers(const ModuleFunction& function);
  bool IsInHelperTable(const StkRuntimeCallTable& calls, uint32_t helper);
  uint32_t FrameSize(const ModuleFunction& function) const;

  const std::string& modulePath_;
  ModuleDestination destination_;
  Host& host_;
  StkReporter& reporter_;
  StkCompilerInfo moduleInfo_;
  bool versionWarned_ = false;
  const StkFileEntry* currentFile_ = nullptr;
  StkFunction* currentRecord_ = nullptr;
  std::vector<Listed> listed_;  // by helper number: whether the runtime helper table names it
};

}  // namespace velkor
