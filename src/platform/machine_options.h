#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velkor {

// What a program's command line says of the machine. Texts are bytes as the caller gave them.
struct MachineOptions {
  std::vector<std::string> mappings;    // 'C:\work=/home/me/work'
  std::optional<std::string> codePage;  // none: that of the locale
  std::string dataFolder;               // empty: beside the program
};

// The options of every program, for the parser of its command line (one with CLI11's operations).
template <typename Parser>
void AddMachineOptions(Parser& parser, MachineOptions& options) {
  parser
      .add_option("--map", options.mappings,
                  "a folder of the project and where it is on this machine; may be repeated")
      ->allow_extra_args(false)
      ->option_text("'C:\\work=/home/me/work'");
  parser
      .add_option("--codepage", options.codePage,
                  "character set of the files: utf-8, 932, cp1252, ... (default: the locale's)")
      ->option_text("NAME");
  parser
      .add_option("--data", options.dataFolder,
                  "folder of the library stack size tables (default: ../dattarn or ../share/velkor of the program)")
      ->option_text("DIR");
}

}  // namespace velkor
