#pragma once

#include <string>

#include "platform/patience.h"

namespace velkor {

// The turn to put files in the place of one file: of all programs and threads that ask for it, one
// has it at a time, until its object ends. The system puts no file in the place of one that is held
// open, so that between the two steps another could do the same. In one thread.
class ReplacingTurn {
 public:
  ReplacingTurn(const std::wstring& target, const Patience& patience);
  ~ReplacingTurn();
  ReplacingTurn(const ReplacingTurn&) = delete;
  ReplacingTurn& operator=(const ReplacingTurn&) = delete;

  // False when another has it, and still had when the patience was over.
  bool IsTaken() const { return isTaken_; }

 private:
  void* mutex_;
  bool isTaken_;
};

}  // namespace velkor
