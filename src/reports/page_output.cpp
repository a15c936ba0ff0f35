#include "reports/page_output.h"

#include <algorithm>
#include <fmt/format.h>
#include <span>
#include <string>
#include <utility>

#include "core/bound_arithmetic.h"
#include "messages/product_version.h"
#include "reports/entry_ranking.h"
#include "reports/head_output.h"
#include "reports/html_text.h"
#include "reports/icicle_svg.h"
#include "reports/note_text.h"
#include "reports/page_parts.h"
#include "reports/reason_words.h"
#include "reports/statement_blocks.h"

namespace velkor::embedded {
extern const std::string_view pageStyle;
extern const std::string_view pageScript;
}  // namespace velkor::embedded

namespace velkor::reports {
namespace {

constexpr size_t kMostColumns = 10;

class PageOutput {
 public:
  PageOutput(const AnalysisResult& result, const StatementPlan& plan,
             std::span<const GateStack> stacks, ResultOutput& output)
      : result_(result),
        plan_(plan),
        stacks_(stacks),
        output_(output),
        groups_(EntryGroups(result)) {
    if (!groups_.empty()) {
      largest_ = LargestNumbers(result, groups_.front().functions, kMostColumns);
    }
  }

  void Write() {
    const std::string title = "Stack use of " + ProjectName();
    output_.Write(fmt::format(
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
        "style-src 'unsafe-inline'; script-src 'unsafe-inline'; img-src data:\">\n"
        "<link rel=\"icon\" href=\"data:,\">\n<title>{}</title>\n<style>\n{}{}</style>\n</head>\n"
        "<body>\n",
        HtmlText(title), embedded::pageStyle, IcicleStyle()));
    WriteHeader(title);
    output_.Write("<main>\n");
    WriteStacks();
    WritePicture();
    WriteReasons();
    WriteWanted();
    WriteTables();
    WriteNotes();
    output_.Write(
        fmt::format("</main>\n<footer>{}</footer>\n<script>\n{}</script>\n"
                    "</body>\n</html>\n",
                    ProductNameAndVersion(), embedded::pageScript));
  }

 private:
  std::string ProjectName() const {
    const size_t separator = result_.project.find_last_of("/\\");
    return result_.project.substr(separator == std::string::npos ? 0 : separator + 1);
  }

  void WriteHeader(const std::string& title) {
    output_.Write(fmt::format("<header>\n<h1>{}</h1>\n", HtmlName(title)));
    if (!largest_.empty()) {
      const uint32_t function = largest_.front().front();
      output_.Write(fmt::format("<p class=\"lead\">The largest number is that of {}: {}.</p>\n",
                                HtmlName(result_.ShownSpecName(function)),
                                BytesText(result_.functions[function])));
    }
    output_.Write("<dl>\n");
    for (const HeadRow& row : HeadRows(result_)) {
      output_.Write(fmt::format("<dt>{}</dt><dd>{}</dd>\n", row.label, HtmlText(row.text)));
    }
    const std::pair<std::string_view, size_t> counts[] = {{"Warnings", result_.warnings.size()},
                                                          {"Notes", result_.notes.size()}};
    for (const auto& [label, count] : counts) {
      output_.Write(count == 0 ? "" : fmt::format("<dt>{}</dt><dd>{}</dd>\n", label, count));
    }
    output_.Write("</dl>\n</header>\n");
  }

  // The numbers below know nothing of interrupts.
  void WriteStacks() {
    if (stacks_.empty()) {
      return;
    }
    output_.Write(
        "<section>\n<h2>Stacks</h2>\n<p>Interrupts are counted here, and nowhere below.</p>\n"
        "<table>\n<thead><tr><th>Stack</th><th class=\"n\">Need</th><th class=\"n\">Size</th>"
        "<th class=\"n\">Free</th><th>State</th></tr></thead>\n<tbody>\n");
    for (const GateStack& stack : stacks_) {
      const std::string size = stack.size ? std::to_string(*stack.size) : "?";
      const std::string free = stack.Free() ? std::to_string(*stack.Free()) : "?";
      output_.Write(fmt::format(
          "<tr><td>{}</td><td class=\"n\">{}{}</td><td class=\"n\">{}</td><td class=\"n\">{}</td>"
          "<td>{}</td></tr>\n",
          HtmlName(stack.name), stack.bounded ? "" : "≥", stack.known, size, free,
          stack.size ? StackStateName(stack.state) : "size not known"));
    }
    output_.Write("</tbody>\n</table>\n</section>\n");
  }

  void WritePicture() {
    if (largest_.empty()) {
      output_.Write("<p>There are no functions.</p>\n");
      return;
    }
    std::vector<IcicleEntry> entries;
    for (const std::span<const uint32_t> functions : largest_) {
      entries.push_back({functions});
    }
    output_.Write(
        "<section>\n<h2>Where the stack goes</h2>\n<figure>\n<div class=\"scroll\" "
        "tabindex=\"0\" role=\"region\" aria-label=\"Picture of the largest numbers\">\n");
    const Icicle icicle = TakeIcicle(result_, entries);
    WriteIcicleSvg(IcicleLayout(result_, icicle), WhyId, output_);
    output_.Write(
        "</div>\n<figcaption>Each column is a largest number and the functions that share it; "
        "each box a call on the path that takes the most bytes, as high as its bytes. "
        "<span class=\"key function\"></span>function <span class=\"key undefined\"></span>not "
        "defined in the program <span class=\"key recursion\"></span>recursion, with its "
        "activations <span class=\"key small\"></span>several small ones <span class=\"key "
        "missing\"></span>not known</figcaption>\n</figure>\n</section>\n");
  }

  static std::string WhyId(size_t number) { return fmt::format("why-{}", number + 1); }

  void WriteReasons() {
    if (largest_.empty()) {
      return;
    }
    output_.Write("<section>\n<h2>Why they are that large</h2>\n");
    PageExplanations explanations(result_, output_);
    for (size_t i = 0; i < largest_.size(); ++i) {
      explanations.Write(largest_[i].front(), WhyId(i), i == 0);
    }
    output_.Write("</section>\n");
  }

  void WriteWanted() {
    constexpr size_t kMostBlocks = 10;
    const std::vector<StatementBlock> blocks = StatementBlocks(plan_, kMostBlocks);
    if (blocks.empty()) {
      return;
    }
    output_.Write(fmt::format(
        "<section>\n<h2>What to state first</h2>\n<p>{} of the top-level functions have no bound. "
        "<code>velkor-cli todo</code> writes all that is missing, to be filled in. Each line "
        "counts with those above it.</p>\n<table>\n<thead><tr><th class=\"n\">Frees</th><th "
        "class=\"n\">Lines</th><th>Statements</th></tr></thead>\n<tbody>\n",
        plan_.unbounded));
    for (const StatementBlock& block : blocks) {
      output_.Write(fmt::format(
          "<tr><td class=\"n\">{}</td><td class=\"n\">{}</td><td><code>{}</code></td></tr>\n",
          block.frees, block.statements.size(),
          HtmlName(StatementList(result_, block.statements))));
    }
    output_.Write("</tbody>\n</table>\n</section>\n");
  }

  void WriteTables() {
    if (groups_.empty()) {
      return;
    }
    output_.Write(
        "<section>\n<p class=\"filter\" hidden><label for=\"filter\">Filter</label> "
        "<input id=\"filter\" type=\"search\" autocomplete=\"off\" spellcheck=\"false\" "
        "placeholder=\"part of a name, of a file, of a reason ( / )\"> "
        "<output for=\"filter\" aria-live=\"polite\"></output></p>\n");
    for (const EntryGroup& group : groups_) {
      WriteTable(group);
    }
    output_.Write("</section>\n");
  }

  void WriteTable(const EntryGroup& group) {
    constexpr size_t kMostFunctions = 3000;
    output_.Write(fmt::format(
        "<h2>{}</h2>\n<table class=\"functions\">\n<thead><tr><th class=\"n\">Bound</th><th "
        "class=\"n\">Total</th><th class=\"n\">Frame</th><th>Function</th><th "
        "class=\"wide\">File</th><th class=\"wide\">Not known</th></tr></thead>\n<tbody>\n",
        group.title));
    const size_t shown = std::min(kMostFunctions, group.functions.size());
    for (const uint32_t function : std::span(group.functions).first(shown)) {
      WriteRow(function);
    }
    output_.Write("</tbody>\n</table>\n");
    if (shown < group.functions.size()) {
      output_.Write(
          fmt::format("<p class=\"quiet\">{} more are in the output of <code>velkor-cli "
                      "analyze --format csv</code>.</p>\n",
                      group.functions.size() - shown));
    }
  }

  void WriteRow(uint32_t function) {
    const AnalysedFunction& analysed = result_.functions[function];
    std::string missing;
    for (const ReasonWitness& reason : result_.Reasons(function)) {
      missing += (missing.empty() ? "" : ", ") + std::string(ReasonName(reason.kind));
    }
    std::string file(result_.File(analysed.file));
    if (analysed.line != 0) {
      file += ":" + std::to_string(analysed.line);
    }
    output_.Write(fmt::format(
        "<tr><td class=\"n\">{}</td><td class=\"n\">{}</td><td class=\"n\">{}</td><td>{}</td><td "
        "class=\"wide\">{}</td><td class=\"wide\">{}</td></tr>\n",
        KnownText(analysed), result_.TotalText(function), result_.FrameText(function),
        HtmlName(result_.ShownDisplayName(function)), HtmlName(file),
        analysed.state == BoundState::kOver ? "over the limit" : missing));
  }

  void WriteNotes() {
    constexpr size_t kMostNotes = 500;
    if (result_.notes.empty()) {
      return;
    }
    output_.Write(
        fmt::format("<section>\n<h2>Notes</h2>\n<details><summary>{} of them</summary>\n"
                    "<ul>\n",
                    result_.notes.size()));
    const size_t shown = std::min(kMostNotes, result_.notes.size());
    for (const AnalysisNote& note : std::span(result_.notes).first(shown)) {
      output_.Write(fmt::format("<li>{}</li>\n", HtmlName(NoteLine(note))));
    }
    if (shown < result_.notes.size()) {
      output_.Write(fmt::format("<li>and {} more</li>\n", result_.notes.size() - shown));
    }
    output_.Write("</ul>\n</details>\n</section>\n");
  }

  const AnalysisResult& result_;
  const StatementPlan& plan_;
  std::span<const GateStack> stacks_;
  ResultOutput& output_;
  const std::vector<EntryGroup> groups_;
  std::vector<std::span<const uint32_t>> largest_;  // in groups_
};

}  // namespace

void WritePage(const AnalysisResult& result, const StatementPlan& plan,
               std::span<const GateStack> stacks, ResultOutput& output) {
  PageOutput(result, plan, stacks, output).Write();
}

}  // namespace velkor::reports
