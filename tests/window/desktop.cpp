#include "desktop.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace velkor::testing {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kPoll(40);
constexpr milliseconds kSteady(400);

bool IsInstalled(const std::string& program) {
  const char* path = std::getenv("PATH");
  std::istringstream folders(path ? path : "");
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (std::filesystem::exists(folder + "/" + program)) {
      return true;
    }
  }
  return false;
}

void RequireInstalled(const std::vector<std::string>& programs) {
  std::string missing;
  for (const std::string& program : programs) {
    missing += IsInstalled(program) ? "" : " " + program;
  }
  if (!missing.empty()) {
    throw std::runtime_error("not installed, but this test needs it:" + missing);
  }
}

// The image of the screen in the file that the server keeps: numbers of four bytes, the highest
// byte first; then the colours, twelve bytes each; then the lines of pixels.
class ScreenImage {
 public:
  explicit ScreenImage(std::string bytes) : bytes_(std::move(bytes)) {}

  std::string Cut(const Area& area) const {
    const size_t pixelBytes = Number(11) / 8;
    const size_t lineBytes = Number(12);
    const size_t start = Number(0) + Number(19) * 12 + area.left * pixelBytes;
    std::string pixels;
    for (size_t line = area.top; line < area.top + area.height; ++line) {
      pixels += bytes_.substr(start + line * lineBytes, area.width * pixelBytes);
    }
    return pixels;
  }

 private:
  size_t Number(size_t index) const {
    size_t number = 0;
    for (size_t i = index * 4; i < index * 4 + 4; ++i) {
      number = number << 8 | static_cast<uint8_t>(bytes_.at(i));
    }
    return number;
  }

  std::string bytes_;
};

}  // namespace

Desktop::Desktop(std::chrono::seconds patience) : end_(steady_clock::now() + patience) {
  RequireInstalled({"Xvfb", "xdotool", "openbox"});
  StartScreen();
  windowManager_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"openbox", "--sm-disable"}, variables_, scratch_.Path("openbox"));
  // The window manager names itself on the screen once it is at work.
  if (!Await([this] { return !Ask({"get_num_desktops"}).empty(); })) {
    throw std::runtime_error("openbox does not start: " + ReadFile(scratch_.Path("openbox")));
  }
}

void Desktop::StartScreen() {
  const std::string output = scratch_.Path("screen");
  screen_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0", "1280x720x24", "-fbdir",
                               scratch_.Root(), "-nolisten", "tcp"},
      Environment(), output);
  // The number of the display is the one line that consists of digits.
  std::string number;
  const bool started = Await([&] {
    std::istringstream lines(ReadFile(output));
    while (std::getline(lines, number)) {
      if (!lines.eof() && !number.empty() &&
          std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return true;
      }
    }
    return false;
  });
  if (!started) {
    throw std::runtime_error("Xvfb does not start: " + ReadFile(output));
  }
  variables_ = {{"DISPLAY", ":" + number},
                {"HOME", scratch_.Root()},
                {"XDG_CONFIG_HOME", scratch_.Root()},
                {"XDG_CACHE_HOME", scratch_.Root()},
                {"LC_ALL", "C.UTF-8"},
                {"LANGUAGE", ""},
                {"QT_QPA_PLATFORM", "xcb"},
                {"QT_SCALE_FACTOR", "1"},
                {"QT_IM_MODULE", ""},
                {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}};
}

bool Desktop::Await(const std::function<bool()>& condition) const {
  return AwaitFor(std::chrono::duration_cast<milliseconds>(end_ - steady_clock::now()), condition);
}

bool Desktop::AwaitFor(milliseconds time, const std::function<bool()>& condition) const {
  const auto end = std::min(end_, steady_clock::now() + time);
  while (!condition()) {
    if (steady_clock::now() >= end) {
      return false;
    }
    std::this_thread::sleep_for(kPoll);
  }
  return true;
}

void Desktop::Press(const std::vector<std::string>& keys) {
  std::vector<std::string> request = {"key", "--delay", "60"};
  request.insert(request.end(), keys.begin(), keys.end());
  Ask(request);
}

void Desktop::Type(const std::string& text) {
  Ask({"type", "--delay", "15", text});
}

void Desktop::Click(int x, int y) {
  Ask({"getactivewindow", "mousemove", "--window", "%1", std::to_string(x), std::to_string(y),
       "click", "1"});
}

void Desktop::MoveActiveWindow(int x, int y) {
  Ask({"getactivewindow", "windowmove", std::to_string(x), std::to_string(y)});
}

std::string Desktop::ActiveTitle() {
  return Ask({"getactivewindow", "getwindowname"});
}

std::string Desktop::Picture(const Area& area) const {
  return ScreenImage(ReadFile(scratch_.Path("Xvfb_screen0"))).Cut(area);
}

std::string Desktop::SteadyPicture(const Area& area) const {
  std::string picture = Picture(area);
  auto since = steady_clock::now();
  Await([&] {
    std::string next = Picture(area);
    if (next != picture) {
      picture = std::move(next);
      since = steady_clock::now();
    }
    return steady_clock::now() - since >= kSteady;
  });
  return picture;
}

// Standard error of the tool is in the answer only where the request fails: then it has none.
std::string Desktop::Ask(const std::vector<std::string>& request) {
  std::vector<std::string> command = {"xdotool"};
  command.insert(command.end(), request.begin(), request.end());
  const std::string output = scratch_.Path("answer");
  ChildProcess tool(command, variables_, output);
  if (tool.WaitFor(std::chrono::seconds(20)) != 0) {
    return "";
  }
  std::string answer = ReadFile(output);
  return answer.substr(0, answer.find('\n'));
}

}  // namespace velkor::testing
