#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cli/exit_status.h"
#include "cli/options.h"
#include "cli/progress_line.h"
#include "cli/terminal_boxes.h"
#include "cli/terminal_log.h"
#include "document/document.h"
#include "document/job_monitor.h"
#include "platform/interrupt.h"
#include "platform/local_machine.h"
#include "reports/analysis_result.h"

namespace velkor::cli {

// The program while it runs one command: the host, the channels of its messages, the document,
// and the loop that stands for a main window. Belongs to the main thread.
class Application : private MessageTarget {
 public:
  // None when an option names nothing usable; error then says what, for the user.
  static std::unique_ptr<Application> Create(const Options& options, std::string& error);
  ~Application() override;

  // Opens the project, runs its analysis to the end and applies the files of --load in memory, in
  // their order. kDone: the document holds the analysis.
  ExitStatus OpenAndAnalyse(const Options& options);
  // Reads a specification file to its end. kNotEverythingRead, after having said so: there is
  // nothing that it could apply to.
  ExitStatus LoadSpecification(const std::string& file, bool saveAfter);
  // Until the document has no job left. False when the user has stopped them.
  bool RunJobs();
  // The same for a command's last job, which writes a file: how the command ends.
  ExitStatus RunWritingJob();
  // Ctrl-C ends the program from here on, as it does with others. The jobs have ended.
  void StopCatchingInterrupts() { interrupt_.reset(); }
  // Tells the user what no message of the log says, ended by one full stop. A text of the code
  // page.
  void Say(std::string_view text);
  // Tells what is to be noted of the analysis as it stands now, behind the log.
  void SayNotes();
  // The one function that the name of the command line stands for; none after having said why.
  StkFunction* FindFunction(const std::string& name);
  // How a command ends that has done its work.
  ExitStatus FinishedStatus();

  const CodePage& GetCodePage() const { return machine_->GetCodePage(); }
  Host& GetHost() { return machine_->GetHost(); }
  CStkDoc& Document() { return document_; }
  StkReporter& Reporter() { return reporter_; }
  // The analysis as it stands now.
  reports::AnalysisResult Result();
  // What the command line gives, as a path and as a text of the code page.
  std::string AbsolutePath(std::string_view path) const { return machine_->AbsolutePath(path); }
  // The same of a file that is read, or written: "-" is standard input, or output.
  std::string InputPath(std::string_view path) const;
  std::string OutputPath(std::string_view path) const;
  // How a command ends that has not found its function: there may be none at all.
  ExitStatus NotFoundStatus();
  std::string Typed(std::string_view text) const { return machine_->Typed(text); }

 private:
  Application(std::unique_ptr<LocalMachine> machine, const Options& options);

  void Post(uint32_t message, uint64_t parameter) override;
  void SayWhatWritesConfiguration(const Options& options);
  void StopJobs();
  std::vector<StkNote> Notes();

  const std::unique_ptr<LocalMachine> machine_;
  MessageQueue queue_;
  ProgressLine progress_;
  TerminalLog log_;
  TerminalBoxes boxes_;
  StkMessages messages_;
  StkReporter reporter_{messages_, boxes_,
                        [this] { queue_.Post([this] { reporter_.HandleRequest(); }); }};
  CStkDoc document_{machine_->GetHost(), reporter_, *this};
  StkJobMonitor monitor_{document_, progress_};
  bool stopped_ = false;
  bool anyFileUnread_ = false;
  std::optional<Interrupt> interrupt_;
};

}  // namespace velkor::cli
