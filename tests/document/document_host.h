#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "document/document.h"
#include "document/job_monitor.h"
#include "document/notifications.h"
#include "platform/event.h"
#include "support/module_text.h"
#include "support/recorder.h"
#include "support/test_host.h"

namespace velkor::testing {

// A main window without a window: what is posted to it waits in the queue until the test drains
// it, and is then recorded and handed to the monitor.
class QueuedMainWindow : public MessageTarget {
 public:
  explicit QueuedMainWindow(MessageQueue& queue) : queue_(queue) {}

  void Post(uint32_t message, uint64_t parameter) override {
    lastPosted = message;
    queue_.Post([this, message, parameter] {
      handled.emplace_back(message, parameter);
      if (monitor != nullptr) {
        monitor->Handle(message, parameter);
      }
    });
  }

  StkJobMonitor* monitor = nullptr;
  std::vector<std::pair<uint32_t, uint64_t>> handled;
  std::atomic<uint32_t> lastPosted{0};  // it may not have been handled yet

 private:
  MessageQueue& queue_;
};

class RecordingView : public View {
 public:
  void OnUpdate(ViewHint hint) override { hints.push_back(hint); }
  // The hints since the last call.
  std::vector<ViewHint> Take() { return std::exchange(hints, {}); }

  std::vector<ViewHint> hints;
};

class NoProgress : public ProgressBar {
 public:
  void SetPosition(uint64_t /*position*/) override {}
  void SetRange(uint64_t /*range*/) override {}
  void StepIt() override {}
};

// A document with its host, its main window and one view, and projects for it: C:\p\app.prj with
// modules C:\p\<name>.asm.
class DocumentHost : public ::testing::Test {
 protected:
  DocumentHost() {
    host.files.AddDirectory("C:\\p");
    window.monitor = &monitor;
    document.AddView(view);
  }

  static std::string Module(const std::string& file, const std::vector<std::string>& functions) {
    return ModuleText(file, functions);
  }
  static std::string Lines(size_t count);
  static std::string ModulePath(const std::string& name) { return "C:\\p\\" + name + ".asm"; }
  void PutModule(const std::string& name, const std::vector<std::string>& functions) {
    host.files.Put(ModulePath(name), Module(name + ".c", functions));
  }
  void PutProject(const std::vector<std::string>& sources);
  // main 10 -> f, f 20 -> g, g 30, in two modules, with room for stops in each.
  void PutChain();

  void Open() {
    ASSERT_TRUE(document.OnOpenDocument(kProject));
    document.StartAnalysis();
  }
  // Until no job is left.
  void Finish();
  void OpenAndFinish() {
    Open();
    Finish();
  }
  StkFunction* Find(std::string_view cName) {
    return document.FunctionTable()->FindBySpecName("", cName, false);
  }
  uint32_t Total(std::string_view cName) {
    const StkFunction* function = Find(cName);
    return function == nullptr ? 0 : function->totalStackSize;
  }
  bool Logged(const std::string& part) const;
  // A job that reads the path waits there until go.
  void HoldAt(const std::string& path);
  // Calls stop while a job is held, and lets the job go on a little later.
  void StopHeld(const std::function<void()>& stop);

  static constexpr const char* kProject = "C:\\p\\app.prj";
  static constexpr const char* kSystemFile = "C:\\p\\app.psg";

  Event held{Event::Reset::kAutomatic};
  Event go{Event::Reset::kManual};
  TestHost host;
  Recorder recorder{host.codePage};
  QueuedMainWindow window{recorder.queue};
  RecordingView view;
  NoProgress progress;
  CStkDoc document{host.host, recorder.reporter, window};
  StkJobMonitor monitor{document, progress};
};

}  // namespace velkor::testing
