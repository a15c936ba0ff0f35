// window_pages FOLDER: writes the man page of velkor, and its icon in all sizes, into FOLDER. A tool
// of the build.
#include <CLI/CLI.hpp>
#include <QGuiApplication>
#include <QPixmap>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "manual/file_output.h"
#include "manual/manual_page.h"
#include "manual/roff.h"
#include "ui/commands/toolbar_icons.h"
#include "ui/window_options.h"

namespace velkor::manual {
namespace {

void WritePage(const std::string& folder) {
  ui::WindowOptions options;
  CLI::App app;
  ui::AddWindowOptions(app, options);
  app.set_version_flag("--version", "");
  ManualPage page("velkor", "show how much stack the functions of a firmware program use at most");
  page.AddCalling(app);
  page.AddSection("DESCRIPTION",
                  Lines(app.get_description()) + "\n.PP\n" +
                      Lines("The window shows the calls below each function, with what each takes, "
                            "and keeps what you state about functions with the project. F1 shows "
                            "the help of the window that is in front.") +
                      "\n");
  page.AddArguments(app);
  page.AddSeeAlso({"velkor-cli(1)", "velkor.toml(5)"});
  WriteFile(folder + "/velkor.1", page.Text());
}

void WriteIcons(const std::string& folder) {
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    const std::string path = folder + "/velkor-" + std::to_string(size) + ".png";
    if (!ui::ProgramIcon().pixmap(size).save(QString::fromStdString(path))) {
      throw std::runtime_error("cannot write " + path);
    }
  }
}

}  // namespace
}  // namespace velkor::manual

int main(int argc, char** argv) {
  const QGuiApplication toolkit(argc, argv);
  try {
    if (argc == 2) {
      velkor::manual::WritePage(argv[1]);
      velkor::manual::WriteIcons(argv[1]);
      return 0;
    }
    std::fputs("window_pages FOLDER\n", stderr);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "window_pages: %s\n", failure.what());
  }
  return 1;
}
