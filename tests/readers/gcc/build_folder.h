#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/bounds.h"
#include "core/function_text.h"
#include "core/recompute.h"
#include "readers/open_input.h"
#include "support/recorder.h"
#include "support/test_host.h"

namespace velkor::testing {

// A folder as a build left it, in memory, and its analysis.
struct BuildFolder {
  static constexpr const char* kFolder = "/b";

  void Put(const std::string& name, std::string bytes) {
    host.files.Put(std::string(kFolder) + "/" + name, std::move(bytes));
  }
  // All files of a folder of the host.
  void PutAll(const std::filesystem::path& folder) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (entry.is_regular_file()) {
        std::ifstream file(entry.path(), std::ios::binary);
        Put(std::filesystem::relative(entry.path(), folder).generic_string(),
            {std::istreambuf_iterator<char>(file), {}});
      }
    }
  }

  // False: it was refused, and boxes say why.
  bool Analyse(const std::string& path = kFolder) {
    if (!path.ends_with(".toml")) {
      host.files.AddDirectory(path);
    }
    input = OpenInput(path, host.host, recorder.reporter);
    if (input == nullptr) {
      return false;
    }
    functions = std::make_unique<StkFunctionTable>(host.codePage, input->Rules());
    files = std::make_unique<StkFileTable>(host.codePage);
    const FunctionDatabase database{*functions, *files};
    const std::unique_ptr<ModuleReader> reader = input->MakeReader();
    Event never{Event::Reset::kManual};
    for (size_t i = 0; i < input->Modules().size(); ++i) {
      EXPECT_EQ(reader->Open(i), FileFailure::kNone);
      reader->Read(never);
      if (reader->Enter(database) != ModuleReader::Entered::kWhole) {
        notWhole.push_back(input->Modules()[i]);
      }
    }
    input->ResolveCalls(database);
    Recompute(*functions, roots, true, nullptr, nullptr, recorder.reporter);
    bounds = std::make_unique<StkBounds>(*functions);
    bounds->Update();
    recorder.queue.Drain();
    return true;
  }

  std::string NameOf(const StkFunction& function) const {
    return FunctionSpecName(function, host.codePage);
  }
  // The only one of that name.
  const StkFunction& operator[](std::string_view name) const {
    const StkFunction* found = nullptr;
    for (const StkFunction* each : functions->Functions()) {
      if (NameOf(*each) == name) {
        EXPECT_EQ(found, nullptr) << name;
        found = each;
      }
    }
    EXPECT_NE(found, nullptr) << name;
    static const StkFunction kNone;
    return found != nullptr ? *found : kNone;
  }
  std::string CalleesOf(std::string_view name) const {
    std::string text;
    for (const StkFunction* callee : (*this)[name].callees) {
      text += (text.empty() ? "" : " ") + NameOf(*callee);
    }
    return text;
  }
  // "main 24 main.c:3: a.c#helper [memcpy]" of each function that calls nothing that is left out.
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (const StkFunction* each : functions->Functions()) {
      std::string line = NameOf(*each) + " " + FrameSizeText(*each) + " " + TotalSizeText(*each);
      for (const StkFunction* callee : each->callees) {
        line += " " + NameOf(*callee);
      }
      lines.push_back(line);
    }
    return lines;
  }
  // Of the notes that hold the text.
  size_t CountNotes(std::string_view text) const {
    return static_cast<size_t>(
        std::ranges::count_if(recorder.log.lines, [&](const std::string& line) {
          return line.starts_with("note: ") && line.find(text) != std::string::npos;
        }));
  }

  TestHost host;
  Recorder recorder{host.codePage};
  std::unique_ptr<ProgramInput> input;
  std::unique_ptr<StkFileTable> files;
  std::unique_ptr<StkFunctionTable> functions;
  StkRootList roots;
  std::unique_ptr<StkBounds> bounds;
  std::vector<std::string> notWhole;
};

// A call graph file from lines "NAME FRAME CALLEE...", NAME with "file:" before it where it is
// static or weak, FRAME with "d" behind it where it is dynamic; "*" calls through a pointer. Places
// are the lines.
inline std::string CallGraph(const std::string& title, const std::vector<std::string>& lines) {
  std::string text = "graph: { title: \"" + title + "\"\n";
  for (size_t i = 0; i < lines.size(); ++i) {
    std::istringstream words(lines[i]);
    std::string name;
    std::string frame;
    words >> name >> frame;
    const bool dynamic = frame.ends_with("d");
    frame.resize(frame.size() - (dynamic ? 1 : 0));
    const std::string place = title + ":" + std::to_string(i + 1) + ":";
    text += "node: { title: \"" + name + "\" label: \"" + name + "\\n" + place + "5\\n" + frame +
            " bytes (" + (dynamic ? "dynamic" : "static") + ")\\n" +
            (dynamic ? "1 dynamic objects\\n x " + place + "9" : "0 dynamic objects") + "\" }\n";
    for (std::string callee; words >> callee;) {
      text += "edge: { sourcename: \"" + name + "\" targetname: \"" +
              (callee == "*" ? "__indirect_call" : callee) + "\" label: \"" + place + "7\" }\n";
    }
  }
  return text + "}\n";
}

}  // namespace velkor::testing
