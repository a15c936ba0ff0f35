#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "document/job_monitor.h"
#include "qt_environment.h"
#include "support/recorder.h"
#include "support/test_host.h"
#include "ui/call_tree_view.h"
#include "ui/function_list_view.h"

namespace velkor::testing {

class RecordingFrame : public FrameOperations {
 public:
  void SaveCallChain(StkFunction& function, bool allChains) override {
    calls.push_back((allChains ? "all " : "maximum ") + std::string(function.name));
  }
  bool AdjustStackSize(StkFunction& function) override {
    calls.push_back("adjust " + std::string(function.name));
    return true;
  }
  void ResetFunction(StkFunction& function) override {
    calls.push_back("reset " + std::string(function.name));
  }
  void UpdateCommands() override {}

  std::vector<std::string> calls;
};

// The call tree and the function list over a real document with one small project.
class AnalysisWindow : public ::testing::Test {
 protected:
  // functions: lines of C name, frame size and callees.
  explicit AnalysisWindow(const std::vector<std::string>& functions);
  ~AnalysisWindow() override;

  void Open();
  // Until no job is left.
  void Finish();
  StkFunction& Function(const std::string& cName);
  // A line for each visible row: indentation, name, "<" where selected.
  std::string Tree() const;
  // A line for each row: the texts of its columns but the file.
  std::string List() const;
  // The visible tree row that shows this name, counted from the top.
  QModelIndex Node(const QString& name, int occurrence = 0) const;
  void Click(const QModelIndex& index, Qt::MouseButton button = Qt::LeftButton);

  struct QueuedWindow : MessageTarget {
    explicit QueuedWindow(AnalysisWindow& test) : owner(test) {}
    void Post(uint32_t message, uint64_t parameter) override;
    AnalysisWindow& owner;
  };
  struct NoProgress : ProgressBar {
    void SetPosition(uint64_t) override {}
    void SetRange(uint64_t) override {}
    void StepIt() override {}
  };

  QApplication& application = TestApplication();
  TestHost host;
  Recorder recorder{host.codePage};
  StkMessages texts;
  QueuedWindow window{*this};
  NoProgress progress;
  CStkDoc document{host.host, recorder.reporter, window};
  StkJobMonitor monitor{document, progress};
  UiContext context{host.host, texts, recorder.reporter, document};
  RecordingFrame frame;
  CStkTreeView tree{context, frame};
  CStkListView list{context, frame, [this] { return tree.SelectedRecord(); }};
};

}  // namespace velkor::testing
