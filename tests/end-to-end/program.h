#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkor::testing {

struct ProgramRun {
  int status = -1;  // exit status; 1000 plus the signal when one ended it
  std::string out;
  std::string err;

  // Whether standard error holds exactly this line.
  bool Says(std::string_view line) const;
};

// The built command line program, run as its users run it. JSON that it prints is held against its
// schema.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments, const std::vector<std::string>& more = {})
      : arguments_(std::move(arguments)) {
    arguments_.insert(arguments_.end(), more.begin(), more.end());
  }

  Program& In(const std::string& folder) { return Set(folder_, folder); }
  // With the rights of a user who owns nothing, where the tests have more.
  Program& WithoutRights() { return Set(withoutRights_, true); }
  Program& With(const std::string& variable, const std::string& value) {
    return Set(environment_[variable], value);
  }
  // Standard output goes to this file, or nowhere at all, or to a pipe that nobody reads.
  Program& OutputTo(const std::string& path) { return Set(output_, path); }
  Program& OutputClosed() { return OutputTo(kClosed); }
  Program& OutputToBrokenPipe() { return OutputTo(kBrokenPipe); }
  // Standard input is this text; else it is that of the tests.
  Program& Input(const std::string& text) { return Set(input_, text); }
  // Standard error is a terminal.
  Program& ErrorsToTerminal() { return Set(errorsToTerminal_, true); }
  // Sends it this signal once standard error holds the text.
  Program& SignalOn(std::string_view text, int signalNumber) {
    return Set(signalText_, text).Set(signalNumber_, signalNumber);
  }
  // Kills it this long after its start, unless it has ended by then.
  Program& KillAfter(std::chrono::microseconds time) { return Set(lifetime_, time); }

  ProgramRun Run();

 private:
  static constexpr const char* kClosed = "closed";
  static constexpr const char* kBrokenPipe = "broken pipe";

  template <typename Field, typename Value>
  Program& Set(Field& field, const Value& value) {
    field = value;
    return *this;
  }
  [[noreturn]] void Become(const std::string& out, int errorFile) const;
  void ConnectInput() const;
  void ConnectOutput(const std::string& out) const;
  int Wait(int process, const std::string& err) const;

  std::vector<std::string> arguments_;
  std::string folder_ = ".";
  bool withoutRights_ = false;
  std::map<std::string, std::string> environment_ = {{"LC_ALL", "C.UTF-8"}, {"VELKOR_MAP", ""}};
  std::optional<std::string> output_;  // none: captured
  std::optional<std::string> input_;
  bool errorsToTerminal_ = false;
  std::string signalText_;
  int signalNumber_ = 0;
  std::optional<std::chrono::microseconds> lifetime_;
};

}  // namespace velkor::testing
