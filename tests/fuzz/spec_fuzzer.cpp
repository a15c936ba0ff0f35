#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "core/adjustments.h"
#include "document/spec_read_job.h"
#include "files/spec_writer.h"
#include "fuzz/fuzz_host.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzzers.h"
#include "fuzz/invariants.h"
#include "fuzz/literal_spec.h"
#include "fuzz/require.h"
#include "fuzz/statements.h"
#include "readers/library_table.h"
#include "support/graph.h"

namespace velkor::testing {

namespace {

constexpr const char* kSpecFile = "C:\\data\\lt.txt";  // where a library table is looked for

// What the lines can name: plain, static and unknown functions, one name twice, names that begin
// with "_", a recursion of two and one of one, and a name of which a byte looks like "\" in 932.
std::string Functions(const CodePage& codePage) {
  const bool wide = codePage.GetKind() == CodePage::Kind::kShiftJis;
  const std::string letter = wide ? "\x83\x5C" : "\xC3\xA9";
  return "main 10 -> f dup r1 memcpy\nf 20 -> g\ng 30\n_g 5\ndup 6 -> self\nstatic dup 4\n"
         "static s 65000\nstatic t" +
         letter +
         " 8 -> s\nr1 5 -> r2 @lsmul\nr2 6 -> r1\n"
         "self 3 -> self\n? memcpy\n? @lsmul\n? k" +
         letter + "x\nbig 65535 -> memcpy\n";
}

struct Choices {
  explicit Choices(FuzzInput& input)
      : codePage(input.Page()),
        kind(static_cast<SpecificationKind>(input.Below(3))),
        answer(
            std::array{BoxAnswer::kIgnore, BoxAnswer::kRetry, BoxAnswer::kAbort}[input.Below(3)]),
        fromCommandLine(input.Below(2) != 0),
        readLimit(1 + input.Below(200)) {}

  const CodePage& codePage;
  SpecificationKind kind;
  BoxAnswer answer;
  bool fromCommandLine;
  size_t readLimit;
};

// One database and one file that is read for it.
class SpecRun {
 public:
  explicit SpecRun(const Choices& choices, size_t readLimit)
      : host(choices.codePage), graph(Functions(choices.codePage), choices.codePage) {
    host.files.SetReadLimit(readLimit);
    host.boxes.answerWith = [answer = choices.answer](const RecordingBoxes::Box& box) {
      return box.buttons == BoxButtons::kOk ? BoxAnswer::kOk : answer;
    };
    host.reporter.SetOpenedFromCommandLine(choices.fromCommandLine);
  }

  void Read(SpecificationKind kind, std::string_view text) {
    host.files.Put(kSpecFile, std::string(text));
    std::vector<std::unique_ptr<StkSpecReader>> sources;
    sources.push_back(Reader(kind));
    StkSpecReadJob job(std::move(sources), graph.functions, roots, host.reporter, window_);
    job.Start();
    job.Wait();
    Require(!job.Failed(), "a reading ends by itself");
  }

  std::string Write() {
    StkSpecWriter writer(StkSpecWriter::Mode::kAutomatic, kSpecFile, graph.functions, host.host);
    Require(writer.Open(), "a file opens");
    Require(writer.Write([](uint32_t) { return true; }) == WriteEnd::kCompleted,
            "a small file is written");
    return host.files.Get(kSpecFile).value_or("");
  }

  Statements Stated() const { return InForce(graph.functions); }

  FuzzHost host;
  Graph graph;
  StkRootList roots;

 private:
  std::unique_ptr<StkSpecReader> Reader(SpecificationKind kind) {
    switch (kind) {
      case SpecificationKind::kLibraryTable:
        return std::make_unique<StkLibraryTable>(LibraryTableKind::kStandard, project_, host.host,
                                                 host.reporter);
      case SpecificationKind::kSystemFile:
        return std::make_unique<StkSystemFileReader>(kSpecFile, host.host, host.reporter);
      default:
        return std::make_unique<StkSpecReader>(kind, kSpecFile, host.host, host.reporter);
    }
  }

  StkProject project_{host.host, host.reporter};
  NoWindow window_;
};

void CheckAdjustments(const StkFunctionTable& functions, SpecificationKind kind) {
  for (const auto& function : functions.Functions()) {
    const StkAppliedAdjustment* adjustment = function->adjustment.get();
    if (kind == SpecificationKind::kLibraryTable) {
      Require(adjustment == nullptr, "a library table adjusts nothing", function->name);
    } else {
      Require(!function->Is(FN_LIBRARY), "only a library table states library sizes",
              function->name);
    }
    if (adjustment == nullptr) {
      continue;
    }
    Require(adjustment->margin == kNoMargin || adjustment->margin <= kSizeLimit,
            "a margin is in the limit", function->name);
    Require(adjustment->depth == kNoDepth || function->Is(FN_RECURSIVE),
            "only recursion has a depth", function->name);
    for (const StkFunction* callee : function->extraCallees) {
      Require(!function->CallsDirectly(*callee), "a stated callee is not called anyway",
              function->name);
    }
  }
}

// A file's effect as its lines taken one by one make it.
class LiteralReading {
 public:
  LiteralReading(const Choices& choices, const StkFunctionTable& table)
      : choices_(choices), table_(table), stated_(table.Count()), librarySizes_(table.Count()) {}

  void Read(std::string_view text) {
    std::vector<bool> taken(table_.Count());
    for (const std::string& line : LiteralLines(text)) {
      const LiteralLine read = ReadLiterally(line, choices_.kind, table_, taken);
      if (!read.error.empty()) {
        if (!GoesOnAfter(read.error)) {
          return;
        }
      } else if (read.statesSomething) {
        taken[read.function->index] = true;
        Apply(read);
      }
    }
  }

  // Depths where there is no recursion are dropped once the callees are known.
  void Check(const SpecRun& run) const {
    std::vector<std::string> told;
    for (const std::string& line : run.host.log.lines) {
      const std::string code = line.substr(0, 5);
      if (code.starts_with("W9") && code != "W9417") {
        told.push_back(code);
      }
    }
    Require(told == errors_, "each error is told once, and nothing else");
    const StkFunctionTable& table = run.graph.functions;
    Require(Effective(stated_, table) == InForce(table), "what the lines state is in force");
    for (const auto& function : table.Functions()) {
      const std::optional<uint32_t>& size = librarySizes_[function->index];
      RequireEqual(function->Is(FN_LIBRARY), size.has_value(), "a library size is from its table",
                   function->name);
      RequireEqual(function->librarySize, size.value_or(0), "a library size", function->name);
    }
  }

 private:
  bool GoesOnAfter(const std::string& error) {
    const bool unknownName = error == "W9410" || error == "W9418";
    if (choices_.kind == SpecificationKind::kLibraryTable) {
      if (!unknownName) {
        errors_.emplace_back("W9428");
      }
      return unknownName;
    }
    const bool system = choices_.kind == SpecificationKind::kSystemFile;
    if (system && unknownName) {
      return true;
    }
    const bool givesUp = system && choices_.fromCommandLine;
    errors_.push_back(givesUp ? "W9429" : error);
    if (givesUp || choices_.answer == BoxAnswer::kAbort) {
      stated_.assign(stated_.size(), std::nullopt);
      return false;
    }
    return true;
  }

  void Apply(const LiteralLine& line) {
    const uint32_t index = line.function->index;
    if (choices_.kind != SpecificationKind::kLibraryTable) {
      Statement statement{line.margin, line.depth, {}};
      for (const StkFunction* callee : line.callees) {
        statement.callees.push_back(callee->index);
      }
      std::sort(statement.callees.begin(), statement.callees.end());
      stated_[index] = statement;
    } else if (line.margin != kNoMargin && !line.function->Is(FN_DEFINED)) {
      librarySizes_[index] = line.margin;
    }
  }

  const Choices& choices_;
  const StkFunctionTable& table_;  // as before the reading
  Statements stated_;
  std::vector<std::optional<uint32_t>> librarySizes_;
  std::vector<std::string> errors_;
};

}  // namespace

void FuzzSpec(std::string_view bytes) {
  FuzzInput input(bytes);
  const Choices choices(input);
  const std::string_view text = input.Rest();

  SpecRun atOnce(choices, SIZE_MAX);
  LiteralReading literal(choices, atOnce.graph.functions);
  literal.Read(text);
  atOnce.Read(choices.kind, text);
  literal.Check(atOnce);
  CheckDatabase(atOnce.graph.functions);
  CheckResults(atOnce.graph.functions, atOnce.roots);
  CheckTopLevel(atOnce.graph.functions, std::vector<bool>(atOnce.graph.functions.Count()));
  CheckAdjustments(atOnce.graph.functions, choices.kind);
  atOnce.host.CheckAllMessages(IsWhole(text, choices.codePage));

  if (choices.readLimit <= 100) {
    SpecRun inPieces(choices, choices.readLimit);
    inPieces.Read(choices.kind, text);
    Require(inPieces.Stated() == atOnce.Stated(), "a file says the same however it is read");
    Require(inPieces.host.log.lines == atOnce.host.log.lines, "and is answered the same");
  }

  SpecRun readBack(choices, SIZE_MAX);
  readBack.Read(SpecificationKind::kSystemFile, atOnce.Write());
  Require(readBack.Stated() == atOnce.Stated(), "what is written reads back");
  Require(readBack.host.log.lines.empty(), "what is written has no error");
}

}  // namespace velkor::testing
