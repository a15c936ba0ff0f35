#include "document_host.h"

#include <chrono>
#include <thread>

namespace velkor::testing {

std::string DocumentHost::Lines(size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i) {
    text += ";\n";
  }
  return text;
}

void DocumentHost::PutProject(const std::vector<std::string>& sources) {
  std::string text = "[ProjectManager]\nPath=C:\\p\n[SrcFile]\n";
  for (size_t i = 0; i < sources.size(); ++i) {
    text += "Source" + std::to_string(i + 1) + "=" + sources[i] + ".c\n";
  }
  host.files.Put(kProject, text);
}

void DocumentHost::PutChain() {
  PutProject({"a", "b"});
  host.files.Put(ModulePath("a"), Module("a.c", {"main 10 f", "f 20 g"}) + Lines(1000));
  host.files.Put(ModulePath("b"), Module("b.c", {"g 30"}) + Lines(1000));
}

void DocumentHost::Finish() {
  recorder.queue.RunUntil([this] { return !document.HasJobs(); });
  recorder.queue.Drain();
}

void DocumentHost::HoldAt(const std::string& path) {
  host.files.OnRead(path, [this] {
    held.Set();
    go.Wait();
  });
}

void DocumentHost::StopHeld(const std::function<void()>& stop) {
  recorder.queue.RunUntil([this] {
    recorder.queue.Post([] { std::this_thread::yield(); });  // it waits for posted work
    return held.Test();
  });
  std::thread release([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    go.Set();
  });
  stop();
  release.join();
}

bool DocumentHost::Logged(const std::string& part) const {
  for (const std::string& line : recorder.log.lines) {
    if (line.find(part) != std::string::npos) {
      return true;
    }
  }
  return false;
}

}  // namespace velkor::testing
