#include "cli/init_command.h"

#include <algorithm>
#include <vector>

#include "files/output_target.h"
#include "platform/path_text.h"
#include "reports/gate/init_text.h"

namespace velkor::cli {
namespace {

// As a file in that folder names it.
std::string RelativeTo(std::string_view path, std::string_view file, const CodePage& codePage) {
  const std::vector<std::string_view> parts = PathSteps(path, codePage);
  std::vector<std::string_view> folder = PathSteps(file, codePage);
  folder.pop_back();
  const auto [from, to] = std::ranges::mismatch(folder, parts);
  std::string relative;
  for (auto each = from; each != folder.end(); ++each) {
    relative += "../";
  }
  for (auto each = to; each != parts.end(); ++each) {
    relative.append(*each).append(std::next(each) == parts.end() ? "" : "/");
  }
  return relative.empty() ? "." : relative;
}

class InitRun {
 public:
  InitRun(Application& application, const Options& options)
      : application_(application),
        options_(options),
        path_(application.AbsolutePath(options.output.empty() ? "velkor.toml" : options.output)) {}

  ExitStatus Run() {
    FileSystem& files = application_.GetHost().files;
    if (!path_.ends_with(".toml")) {
      application_.Say("the name of " + path_ + " does not end in .toml");
      return kWrongUsage;
    }
    if (files.Exists(path_)) {
      application_.Say(path_ + " is there already: take it away, or name another with --output");
      return kWrongUsage;
    }
    // The input is analysed as the new file will name it.
    if (!Write("schema = 1\ninput = " + Named(options_.project) +
               (options_.elf.empty() ? "" : "\nelf = " + Named(options_.elf)) + "\n")) {
      return kOutputFailed;
    }
    const ExitStatus analysed = Analyse();
    if (analysed != kDone) {
      files.Remove(path_);
      return analysed;
    }
    if (!WriteFound()) {
      return kOutputFailed;
    }
    application_.Say(path_ + " is written: fill in what it leaves open, then run check");
    return application_.FinishedStatus();
  }

 private:
  ExitStatus Analyse() {
    Options options = options_;
    options.project = options_.output.empty() ? "velkor.toml" : options_.output;
    return application_.OpenAndAnalyse(options);
  }

  bool WriteFound() {
    const reports::AnalysisResult result = application_.Result();
    return Write(reports::InitText(
        {.result = result,
         .facts = application_.Document().Input()->Facts(),
         .input = Relative(options_.project),
         .elf = options_.elf.empty() ? "" : Relative(options_.elf),
         .isProject = options_.project.ends_with(".prj") || options_.project.ends_with(".PRJ")}));
  }

  bool Write(const std::string& text) {
    StkOutputTarget target(path_, application_.GetHost());
    const bool written = target.Open(StkOutputTarget::Way::kAsIsNeeded) &&
                         target.Output()->Write(text) &&
                         target.Finish() == StkOutputTarget::End::kInPlace;
    if (!written) {
      application_.Say("cannot write " + path_);
    }
    return written;
  }

  std::string Relative(const std::string& path) const {
    const std::string absolute = application_.AbsolutePath(path);
    const CodePage& codePage = application_.GetCodePage();
    return codePage.ToUtf8(RelativeTo(absolute, path_, codePage));
  }
  std::string Named(const std::string& path) const { return reports::TomlText(Relative(path)); }

  Application& application_;
  const Options& options_;
  const std::string path_;
};

}  // namespace

ExitStatus Init(Application& application, const Options& options) {
  return InitRun(application, options).Run();
}

}  // namespace velkor::cli
