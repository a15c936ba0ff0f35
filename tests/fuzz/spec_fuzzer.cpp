#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
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
#include "readers/tarn/library_table.h"
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

struct Choices : LiteralChoices {
  explicit Choices(FuzzInput& input) : codePage(input.Page()) {
    kind = static_cast<SpecificationKind>(input.Below(3));
    answer = std::array{BoxAnswer::kIgnore, BoxAnswer::kRetry, BoxAnswer::kAbort}[input.Below(3)];
    fromCommandLine = input.Below(2) != 0;
    readLimit = 1 + input.Below(200);
  }

  const CodePage& codePage;
  size_t readLimit;
};

// One database and one file that is read for it.
class SpecRun {
 public:
  explicit SpecRun(const Choices& choices, size_t readLimit)
      : host(choices.codePage), graph(Functions(choices.codePage), choices.codePage) {
    // Namesakes, and names that a line cannot hold without quotes.
    for (const auto& [symbol, file] :
         {std::pair{"_s", "D:\\q\\s.c"}, {"_s", "D:\\a b\\s.c"}, {"_two words", "D:\\q\\#,.c"}}) {
      graph.functions.AddDefined(symbol, graph.files.Intern(file));
    }
    graph.functions.AddDefined("_f", graph.files.Intern("D:\\q\\f.c")).flags |= FN_GLOBAL;
    graph.functions.AddUnknown("_s");
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
    StkBounds bounds(graph.functions);
    StkSpecReadJob job(std::move(sources), graph.functions, roots, bounds, true, host.reporter,
                       window_);
    job.Start();
    job.Wait();
    Require(job.End() == WorkEnd::kCompleted, "a reading ends by itself");
  }

  std::string Write() {
    StkSpecWriter writer(StkSpecWriter::Mode::kAutomatic, kSpecFile, graph.functions, host.host);
    Require(writer.Open(), "a file opens");
    Require(writer.Write([](uint32_t) { return true; }) == WorkEnd::kCompleted,
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

// Depths where there is no recursion are dropped once the callees are known.
void CheckAgainst(const LiteralFile& literal, const SpecRun& run) {
  std::vector<std::string> told;
  for (const std::string& line : run.host.log.lines) {
    const std::string code = line.substr(0, 5);
    if (code.starts_with("W9") && code != "W9417") {
      told.push_back(code);
    }
  }
  Require(told == literal.errors, "each error is told once, and nothing else");
  const StkFunctionTable& table = run.graph.functions;
  Require(Effective(literal.stated, table) == InForce(table), "what the lines state is in force");
  for (const auto& function : table.Functions()) {
    const std::optional<uint32_t>& size = literal.librarySizes[function->index];
    RequireEqual(function->Is(FN_LIBRARY), size.has_value(), "a library size is from its table",
                 function->name);
    RequireEqual(function->librarySize, size.value_or(0), "a library size", function->name);
  }
}

}  // namespace

void FuzzSpec(std::string_view bytes) {
  FuzzInput input(bytes);
  const Choices choices(input);
  const std::string_view text = input.Rest();

  SpecRun atOnce(choices, SIZE_MAX);
  const LiteralFile literal(text, choices, atOnce.graph.functions);
  atOnce.Read(choices.kind, text);
  CheckAgainst(literal, atOnce);
  CheckDatabase(atOnce.graph.functions);
  CheckResults(atOnce.graph.functions, atOnce.roots);
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
