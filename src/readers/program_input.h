#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_table.h"
#include "core/function_table.h"
#include "core/string_list.h"
#include "files/spec_reader.h"
#include "messages/note.h"
#include "platform/event.h"
#include "platform/file_system.h"
#include "platform/limits.h"
#include "readers/configuration.h"
#include "readers/program_facts.h"

namespace velkor {

// Where the functions of an input's modules go.
struct FunctionDatabase {
  StkFunctionTable& functions;
  StkFileTable& files;
};

// Takes one module after another from its file into the function database: what it reads is
// recorded first, so that modules can be read several at once and still be entered in their order.
// Open and Read are called in any thread, Enter in that of the analysis job; never two of them at a
// time.
class ModuleReader {
 public:
  enum class Entered {
    kWhole,
    kNotWhole,  // read to its end, but a part of it is missing, which a note says
    kFailed,    // ended early, and reported; what was entered before stays
    kStopped,   // by the stop event
  };

  virtual ~ModuleReader() = default;

  // module: its number in the input's list.
  virtual FileFailure Open(size_t module) = 0;
  // The module that has been opened; closes its file. With the stop event set, it ends soon.
  virtual void Read(Event& stopEvent) = 0;
  // The module that has been read.
  virtual Entered Enter(FunctionDatabase database) = 0;
};

// A program as its build left it: a list of modules, and what belongs to the analysis of all of
// them. Knows its files' formats, which nothing else does. Analysed once. It keeps what its
// modules have in common while they are entered; what it answers of that is valid when no analysis
// runs. User-interface thread, unless said otherwise.
class ProgramInput {
 public:
  virtual ~ProgramInput() = default;

  // What the user opened.
  virtual const std::string& Path() const = 0;
  // The paths of the modules, in the order in which they are entered. Any thread.
  virtual const StkStringList& Modules() const = 0;
  virtual FunctionRules Rules() const = 0;
  // Longer paths of modules are not opened.
  virtual size_t MostPathLength() const { return kMaxPathLength; }
  // Where the adjustments of its functions are kept; empty: nowhere.
  virtual std::string SystemFilePath() const = 0;

  // What has written the modules, and what they are, as texts name them. Any thread.
  virtual std::string_view GeneratorName() const = 0;
  virtual std::string_view ModuleKindName() const = 0;
  // None until a module has said it.
  virtual std::optional<std::string> GeneratorVersion() const = 0;

  // Each reader may be used in a thread of its own; this one is called in that of the job.
  virtual std::unique_ptr<ModuleReader> MakeReader() = 0;
  // After the last module has been entered, in the thread of the job: settles which function each
  // call means.
  virtual void ResolveCalls(FunctionDatabase database) = 0;
  // Files beside the modules that it belongs to, or could: the sources that it lists, and every
  // library table. No output may take their place.
  virtual StkStringList RelatedFiles() const { return {}; }
  // What states sizes of its functions, in the order in which it is to be read.
  virtual std::vector<std::unique_ptr<StkSpecReader>> BuildSpecSources() = 0;
  // What is to be noted of the input and its modules, besides what has been posted meanwhile.
  // Whole once the calls have been resolved.
  virtual const std::vector<StkNote>& Notes() const {
    static const std::vector<StkNote> kNone;
    return kNone;
  }
  // Of the linked program. Whole once the calls have been resolved.
  virtual const ProgramFacts& Facts() const {
    static const ProgramFacts kNone;
    return kNone;
  }
  // What a velkor.toml states of the input; none where there is none.
  virtual const Configuration* Settings() const { return nullptr; }
};

}  // namespace velkor
