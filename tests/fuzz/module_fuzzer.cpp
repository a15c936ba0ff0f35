#include <string>

#include "core/recompute.h"
#include "fuzz/fuzz_host.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/invariants.h"
#include "fuzz/require.h"
#include "readers/tarn/module_entry.h"
#include "readers/tarn/module_parser.h"
#include "readers/tarn/module_reader.h"

namespace velkor::testing {

namespace {

constexpr const char* kModule = "C:\\p\\m.asm";

enum class Reading {
  kWhole,     // by the reader
  kEachLine,  // by the parser alone: no line is passed over unseen
};

// What the reader must come to the same as.
void ReadEachLine(TextInputFile& file, const CodePage& codePage, ModuleRecording& recording) {
  ModuleParser parser(codePage, recording);
  TextLine line;
  uint32_t number = 0;
  bool accepted = true;
  while (accepted && file.ReadLine(line, 5119)) {
    ++number;
    if (line.length > 5119) {
      recording.events.push_back({ModuleRecording::Step::kLongLine, number});
    }
    accepted = parser.HandleLine(line, number);
  }
  recording.lastLine = number;
  recording.end = !accepted     ? ModuleRecording::End::kFormatError
                  : number == 0 ? ModuleRecording::End::kNoLine
                                : ModuleRecording::End::kWhole;
  parser.Finish(!file.LastLineEnded(), number);
}

// One analysis of modules that are read one after another.
class ModuleRun {
 public:
  ModuleRun(const CodePage& page, Reading reading, size_t readLimit)
      : host(page), reading_(reading) {
    host.files.SetReadLimit(readLimit);
  }

  void Read(std::string_view text) {
    host.files.Put(kModule, std::string(text));
    TextInputFile file(host.files.OpenForRead(kModule).file, host.codePage);
    ModuleRecording recording;
    if (reading_ == Reading::kEachLine) {
      ReadEachLine(file, host.codePage, recording);
    } else {
      StkAsmModuleReader(file, stopEvent_, host.codePage, recording).Read();
    }
    const std::string path = kModule;
    ModuleEntry entry(path, {{functions, files}, project_, compiler, notes_}, host.host,
                      host.reporter, stopEvent_);
    const size_t linesBefore = host.log.lines.size();
    const ModuleEntry::Result result = entry.Enter(recording);
    Require(result != ModuleEntry::Result::kStopped, "nobody stopped the reading");
    Require(result != ModuleEntry::Result::kFailed || host.log.lines.size() > linesBefore,
            "a module that is given up is reported");
    Require(result != ModuleEntry::Result::kNotWhole || !notes_.empty(),
            "a module that is not whole is noted");
    if (functions.Count() > 0) {
      Require(compiler.info.series != 0 && compiler.runtimeNames,
              "functions come from an accepted module");
    }
  }

  // Everything that the modules have said, as text.
  std::string Said() const {
    std::string text = std::to_string(compiler.info.version) + "\n";
    for (const auto& function : functions.Functions()) {
      text += std::string(function->name) + " " +
              (function->file != nullptr ? function->file->name : "") + " " +
              std::to_string(function->flags) + " " + std::to_string(function->frameSize) + " " +
              std::to_string(function->librarySize) + ":";
      for (const std::string_view name : functions.CallNames(*function)) {
        text.append(" ").append(name);
      }
      text += "\n";
    }
    for (const std::string& line : host.log.lines) {
      text += line + "\n";
    }
    for (const StkNote& note : notes_) {
      text += note.text + std::to_string(note.line) + "\n";
    }
    return text;
  }

  FuzzHost host;
  StkFunctionTable functions{host.codePage};
  StkFileTable files{host.codePage};
  AcceptedCompiler compiler;

 private:
  const StkProject project_{host.host, host.reporter};
  std::vector<StkNote> notes_;
  const Reading reading_;
  Event stopEvent_{Event::Reset::kManual};
};

}  // namespace

void FuzzModule(std::string_view bytes) {
  FuzzInput input(bytes);
  const CodePage& codePage = input.Page();
  const size_t readLimit = 1 + input.Below(200);
  const std::string_view first = input.Section();
  const std::string_view second = input.Section();

  ModuleRun atOnce(codePage, Reading::kWhole, SIZE_MAX);
  ModuleRun otherwise(codePage, readLimit % 2 == 0 ? Reading::kWhole : Reading::kEachLine,
                      readLimit);
  for (ModuleRun* run : {&atOnce, &otherwise}) {
    run->Read(first);
    if (!second.empty()) {
      run->Read(second);
    }
  }
  RequireEqual(otherwise.Said(), atOnce.Said(), "a module says the same however it is read");
  atOnce.host.CheckAllMessages(IsWhole(first, codePage) && IsWhole(second, codePage));

  StkRootList roots;
  atOnce.functions.ResolveAllCalls();
  CheckDatabase(atOnce.functions);
  Recompute(atOnce.functions, roots, true, nullptr, nullptr, atOnce.host.reporter);
  CheckResults(atOnce.functions, roots);
}

}  // namespace velkor::testing
