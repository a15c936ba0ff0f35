#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velkor::bench {

// The text of one module, gathered in its three parts: symbols, code, code information. Names are
// C names.
class ModuleText {
 public:
  // The reader takes modules of up to 65535 lines.
  static constexpr uint32_t kMaxLines = 65000;

  enum class Linkage { kGlobal, kStatic };

  // sourcePath: of the C source, as the module states it.
  explicit ModuleText(std::string_view sourcePath);

  void DeclareFunction(std::string_view name, Linkage linkage);
  void DeclareVariable(std::string_view name);
  void AddLabel(std::string_view name);
  // Without its line end.
  void AddCode(std::string_view line);
  // The calls that follow are this function's.
  void DescribeFunction(std::string_view name, uint32_t frameSize);
  void DescribeCall(std::string_view name);

  uint32_t LineCount() const { return lineCount_; }
  size_t Size() const { return symbols_.size() + code_.size() + information_.size(); }
  std::string Text() const { return symbols_ + code_ + information_; }

 private:
  std::string symbols_;
  std::string code_;
  std::string information_;
  uint32_t lineCount_ = 0;
};

}  // namespace velkor::bench
