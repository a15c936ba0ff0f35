#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkor::reports {

// Bytes that lie on a stack beside what the functions take.
struct StackFigure {
  uint32_t bytes = 0;
  // Where nothing that runs on the stack uses floating point.
  std::optional<uint32_t> withoutFloatingPoint;
  std::string source;  // what the figure was taken from
};

// The figures that velkor knows by target and RTOS, each with its source. Read from its own text
// once, then never changed.
class TargetTable {
 public:
  // The table that is linked into the program.
  static const TargetTable& BuiltIn();

  // What the hardware pushes when an interrupt begins; none where the table lacks the target.
  const StackFigure* Frame(std::string_view target) const;
  // What a change of the task pushes. rtos "none": there are no tasks.
  const StackFigure* Switch(std::string_view target, std::string_view rtos) const;

  struct Rtos {
    std::string name;
    std::vector<std::string> objects;  // any of them tells it
  };
  const std::vector<Rtos>& KnownRtos() const { return rtos_; }
  // By name, without those that stand for many.
  std::vector<std::string> KnownTargets() const;

 private:
  struct Entry {
    std::string rtos;  // empty: a frame
    std::vector<std::string> targets;
    StackFigure figure;
  };

  explicit TargetTable(std::string_view text);

  const StackFigure* Find(std::string_view target, std::string_view rtos) const;

  std::vector<Entry> entries_;
  std::vector<Rtos> rtos_;
};

}  // namespace velkor::reports
