#include "ui/window_commands.h"

#include <utility>

namespace velkor::ui {

namespace {

constexpr const char* kZoom = "window/zoom";

}  // namespace

WindowCommands::WindowCommands(QWidget& window, FrameParts& parts,
                               std::function<void(int step)> goToPane)
    : window_(window), parts_(parts), goToPane_(std::move(goToPane)) {
  if (const int percent = parts_.settings.Value(kZoom).toInt(); percent != 0) {
    zoom_.Set(percent);
  }
}

std::optional<CommandState> WindowCommands::StateOf(Command command) {
  switch (command) {
    case Command::kZoomIn:
      return CommandState{zoom_.Percent() < TextZoom::kMost};
    case Command::kZoomOut:
      return CommandState{zoom_.Percent() > TextZoom::kLeast};
    case Command::kZoomReset:
      return CommandState{zoom_.Percent() != 100};
    case Command::kNextPane:
    case Command::kPreviousPane:
    case Command::kLegend:
    case Command::kProjectOptions:
      return CommandState{true};
    default:
      return std::nullopt;
  }
}

void WindowCommands::Execute(Command command) {
  switch (command) {
    case Command::kZoomIn:
      return Zoom(zoom_.Percent() + 10);
    case Command::kZoomOut:
      return Zoom(zoom_.Percent() - 10);
    case Command::kZoomReset:
      return Zoom(100);
    case Command::kNextPane:
      return goToPane_(1);
    case Command::kPreviousPane:
      return goToPane_(-1);
    case Command::kLegend:
      parts_.legend(&window_);
      return;
    case Command::kProjectOptions:
      parts_.options(&window_);
      return;
    default:
      return;
  }
}

void WindowCommands::Zoom(int percent) {
  zoom_.Set(percent);
  parts_.settings.SetValue(kZoom, zoom_.Percent());
}

}  // namespace velkor::ui
