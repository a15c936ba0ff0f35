#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "readers/tarn/module_recording.h"

namespace velkor {

// What a module's code shows of its functions, to be held against what its code information block
// says of them: which of them it holds, and which symbols each calls. Names are known by their
// numbers in the recording.
class CodeWatch {
 public:
  struct Label {
    uint32_t name;
    uint32_t line;
  };

  explicit CodeWatch(ModuleRecording& recording) : recording_(recording) {}

  void AddFunctionSymbol(uint32_t name);
  bool IsFunctionSymbol(uint32_t name) const {
    return name < symbols_.size() && symbols_[name].isFunction;
  }
  bool HasFunctionSymbols() const { return hasFunctionSymbols_; }

  // A label of a code segment: the code that follows is that of the function of this name; of none
  // after a bank switch stub. Other labels change nothing.
  void TakeLabel(std::string_view label, uint32_t line);
  // A call in the code that follows a label. Only what may matter is kept, each once.
  void TakeCall(std::string_view name, uint32_t line);

  // When all records are there: the calls that they do not list, into the recording.
  void FindHiddenCalls();
  // The first label of a function that has no record.
  std::optional<Label> FindUnrecordedLabel() const;

 private:
  static constexpr uint32_t kNone = 0xFFFFFFFF;

  struct Symbol {
    bool isFunction = false;
    bool hasLabel = false;
    uint32_t lastCaller = kNone;
  };
  struct Call {
    uint32_t caller;
    uint32_t callee;
    uint32_t line;
  };

  // Of one record: the events that follow its own.
  void FindHiddenCallsOf(uint32_t function, size_t firstEvent);

  ModuleRecording& recording_;
  std::vector<Symbol> symbols_;  // by name; may end before the last one
  bool hasFunctionSymbols_ = false;
  uint32_t function_ = kNone;  // whose code it is
  std::vector<Label> labels_;
  std::vector<Call> calls_;         // sorted by caller at the end
  std::vector<uint32_t> listedBy_;  // the last record that lists the name, from 1; by name
};

}  // namespace velkor
