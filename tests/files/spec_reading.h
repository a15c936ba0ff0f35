#pragma once

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "files/spec_reader.h"
#include "files/text_reader.h"
#include "platform/limits.h"
#include "support/graph.h"
#include "support/recorder.h"
#include "support/test_host.h"

namespace velkor::testing {

// Reads specification lines as a job does, in a thread of its own, while this one answers the
// stop questions.
struct SpecReading {
  explicit SpecReading(std::string_view graphText, CodePage page = CodePage::Utf8())
      : graph(graphText, page), host(page), recorder(host.codePage) {}

  // Whether the file was read to its end.
  bool Read(SpecificationKind kind, std::string_view text,
            const std::string& path = "C:\\p\\s.txt") {
    reader = std::make_unique<StkSpecReader>(kind, path, host.host, recorder.reporter);
    Event stop(Event::Reset::kManual);
    bool complete = true;
    InWorker([&] {
      StkMemorySource source(text);
      StkTextReader lines(source);
      TextLine line;
      uint32_t number = 0;
      while (complete && lines.ReadLine(line, kTextBufferSize)) {
        complete = reader->ParseLine(graph.functions, ++number, line.text, line.length, stop);
      }
    });
    return complete;
  }

  template <typename Work>
  void InWorker(const Work& work) {
    bool done = false;
    std::thread worker([&] {
      work();
      recorder.queue.Post([&done] { done = true; });
    });
    recorder.queue.RunUntil([&done] { return done; });
    worker.join();
  }

  // "margin depth callee callee", with "-" for what was not given; "" without a pending adjustment.
  std::string Pending(std::string_view cName) {
    const auto& pending = graph[cName].pendingAdjustment;
    if (pending == nullptr) {
      return "";
    }
    std::string text = pending->margin == kNoMargin ? "-" : std::to_string(pending->margin);
    text += pending->depth == kNoDepth ? " -" : " " + std::to_string(pending->depth);
    if (pending->callees) {
      for (const StkFunction* callee : *pending->callees) {
        text += " " + std::string(callee->name);
      }
    }
    return text;
  }

  Graph graph;
  TestHost host;
  Recorder recorder;
  std::unique_ptr<StkSpecReader> reader;
};

}  // namespace velkor::testing
