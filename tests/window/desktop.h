#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "child_process.h"
#include "end-to-end/scratch_folder.h"

namespace velkor::testing {

// In pixels of the screen.
struct Area {
  size_t left = 0;
  size_t top = 0;
  size_t width = 0;
  size_t height = 0;
};

// A screen of 1280 x 720 in memory with a window manager, and the hands of a user at it. Throws
// std::runtime_error, naming what is missing, where it cannot start.
class Desktop {
 public:
  // From its start, all that is awaited on this desktop has to have come within this time.
  explicit Desktop(std::chrono::seconds patience);

  // What programs need to find this desktop, and no other one.
  const Environment& Variables() const { return variables_; }

  // Polls until the condition holds; false when it does not within the patience that is left.
  bool Await(const std::function<bool()>& condition) const;
  bool AwaitFor(std::chrono::milliseconds time, const std::function<bool()>& condition) const;
  bool IsPatient() const { return std::chrono::steady_clock::now() < end_; }

  // Keys by the names of xdotool, as in "alt+f".
  void Press(const std::vector<std::string>& keys);
  void Type(const std::string& text);
  // Relative to the active window, without its decoration.
  void Click(int x, int y);
  void MoveActiveWindow(int x, int y);
  // "" while no window is active.
  std::string ActiveTitle();
  // The pixels of an area, to be compared with others of the same area.
  std::string Picture(const Area& area) const;
  // The picture, once it has been the same for some time.
  std::string SteadyPicture(const Area& area) const;

 private:
  void StartScreen();
  std::string Ask(const std::vector<std::string>& request);

  const std::chrono::steady_clock::time_point end_;
  const ScratchFolder scratch_;
  Environment variables_;
  std::unique_ptr<ChildProcess> screen_;
  std::unique_ptr<ChildProcess> windowManager_;
};

}  // namespace velkor::testing
