#include "readers/gcc/unit_recorder.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "readers/gcc/call_graph_file.h"
#include "readers/gcc/call_graph_label.h"
#include "readers/gcc/object_match.h"
#include "readers/gcc/object_recorder.h"
#include "readers/gcc/symbol_name.h"

namespace velkor {
namespace {

constexpr size_t kMostFaults = 20;        // of one file that are noted each
constexpr size_t kMostHiddenCalls = 100;  // likewise

uint32_t SizeOf(uint64_t bytes) {
  return bytes > kGccSizeLimit ? kOverSize : static_cast<uint32_t>(bytes);
}

class UnitRecorder {
 public:
  UnitRecorder(const UnitFiles& files, const StkMessages& messages, UnitRecording& recording)
      : files_(files),
        messages_(messages),
        recording_(recording),
        graph_(ReadCallGraph(files.graph)) {}

  void Record() {
    recording_.title = graph_.title;
    recording_.isLinkTime = files_.isLinkTime;
    recording_.isWhole = graph_.isWhole;
    NoteFaults();
    RecordNodes();
    std::optional<ObjectRecorder> object;
    if (!files_.objectPath.empty()) {
      object.emplace(files_.object, recording_);
      NoteObjectFaults(object->Faults());
      if (object->Elf().IsElf()) {
        match_ = MatchObject(graph_, object->Facts());
        RecordObject(*object);
      }
    }
    RecordEdges();
    if (object && object->Elf().IsElf()) {
      RecordHiddenCalls(*object);
      object->RecordTakenAddresses();
      object->RecordTaskUses();
    }
    if (!std::ranges::is_sorted(recording_.calls, {}, &UnitRecording::Call::caller)) {
      std::ranges::stable_sort(recording_.calls, {}, &UnitRecording::Call::caller);
    }
    if (object && object->Elf().Machine() == ELF_X86_64) {
      AddRedZones();
    }
  }

 private:
  using Reach = UnitRecording::Reach;
  static constexpr uint32_t kNone = UnitRecording::kNone;

  struct TitleFacts {
    uint32_t function = kNone;    // where it is recorded
    uint32_t name = kNone;        // where it is called and not recorded
    uint32_t lastCaller = kNone;  // the latest function with such a call
  };

  void Note(std::string_view rule, std::string text, std::string_view file, uint32_t line,
            uint32_t function = kNone) {
    recording_.notes.push_back(
        {.rule = rule,
         .text = std::move(text),
         .file = std::string(file),
         .line = line,
         .function = function == kNone ? std::nullopt : std::optional(function)});
  }

  void NoteFaults() {
    for (size_t i = 0; i < graph_.faults.size() && i < kMostFaults; ++i) {
      std::string text(TextOf(graph_.faults[i].fault));
      if (i + 1 == kMostFaults && graph_.faults.size() > kMostFaults) {
        text += " (and " + std::to_string(graph_.faults.size() - kMostFaults) + " more faults)";
      }
      Note("module-not-whole", messages_.FormatMessageText(MessageKey::kNoteModuleNotWhole, {text}),
           files_.graphPath, graph_.faults[i].line);
    }
  }

  void NoteObjectFaults(const BinaryFaults& faults) {
    for (const BinaryFaults::Entry& entry : faults.Entries()) {
      Note("object-not-whole",
           messages_.FormatMessageText(MessageKey::kNoteObjectFault, {TextOf(entry)}),
           files_.objectPath, 0);
    }
  }

  // The number of a title that lies in the graph or in the names of the recording.
  uint32_t TitleOf(std::string_view title) {
    const uint32_t number = titles_.InternLasting(title);
    if (number == titleFacts_.size()) {
      titleFacts_.emplace_back();
    }
    return number;
  }

  uint32_t& FunctionOfTitle(std::string_view title) {
    return titleFacts_[TitleOf(title)].function;
  }

  // Where the symbol is the whole title, as it mostly is.
  uint32_t NameOf(std::string_view symbol, uint32_t title) {
    return symbol.size() == titles_[title].size() ? recording_.names.InternFrom(titles_, title)
                                                  : recording_.names.Intern(symbol);
  }

  void RecordNodes() {
    functionOfNode_.assign(graph_.nodes.size(), kNone);
    titles_.Reserve(graph_.nodes.size());
    titleFacts_.reserve(graph_.nodes.size());
    recording_.functions.reserve(graph_.nodes.size());
    for (uint32_t i = 0; i < graph_.nodes.size(); ++i) {
      const CallGraphNode& node = graph_.nodes[i];
      if (node.shape == CallGraphNode::Shape::kEllipse) {
        continue;
      }
      const uint32_t title = TitleOf(node.title);
      uint32_t& function = titleFacts_[title].function;
      if (function == kNone) {
        function = static_cast<uint32_t>(recording_.functions.size());
        recording_.functions.push_back(FunctionOfNode(node, title));
      }
      functionOfNode_[i] = function;
      RecordFrame(node, recording_.functions[function]);
      if (node.bytes > kGccSizeLimit) {
        NoteOverSize(node, function);
      }
    }
  }

  UnitRecording::Function FunctionOfNode(const CallGraphNode& node, uint32_t title) {
    UnitRecording::Function function;
    function.name = NameOf(node.symbol, title);
    if (const std::string shown = DemangledName(node.symbol); !shown.empty()) {
      function.shownName = recording_.names.Intern(shown);
    }
    function.reach = node.isQualified ? Reach::kUnknown : Reach::kGlobal;
    function.isAlias = node.shape == CallGraphNode::Shape::kTriangle;
    if (!node.place.file.empty()) {
      function.file = FileOf(node.place.file);
      function.line = node.place.line;
    }
    return function;
  }

  // Neighbours mostly stand in one file.
  uint32_t FileOf(std::string_view file) {
    if (file != lastFileText_ || lastFile_ == kNone) {
      lastFile_ = recording_.files.Intern(file);
      lastFileText_ = file;
    }
    return lastFile_;
  }

  static void RecordFrame(const CallGraphNode& node, UnitRecording::Function& function) {
    using Frame = CallGraphNode::Frame;
    function.frameSize = std::max(function.frameSize, SizeOf(node.bytes));
    function.isDynamic = function.isDynamic || node.frame == Frame::kDynamic;
    function.isSizeUnknown =
        function.isSizeUnknown ||
        (node.frame == Frame::kMissing && node.shape == CallGraphNode::Shape::kFunction);
  }

  // All that reaches it is over the limit too; the true number is said here alone.
  void NoteOverSize(const CallGraphNode& node, uint32_t function) {
    Note("odd-number",
         messages_.FormatMessageText(MessageKey::kNoteOddNumber,
                                     {node.symbol, std::to_string(node.bytes), kGccSizeLimit + 1}),
         node.place.file, node.place.line, function);
  }

  void RecordObject(ObjectRecorder& object) {
    recording_.hasMachine = true;
    recording_.machine = object.Elf().Machine();
    recording_.hasLinkTimeCode = object.Facts().HasLinkTimeCode();
    recording_.compilerVersion = CompilerVersion(object.Facts().Compiler());
    for (uint32_t i = 0; i < graph_.nodes.size(); ++i) {
      const uint32_t inObject = match_.functionOfNode[i];
      if (functionOfNode_[i] != kNone && inObject != ObjectMatch::kNone) {
        object.SetRecorded(inObject, functionOfNode_[i]);
        UnitRecording::Function& function = recording_.functions[functionOfNode_[i]];
        const Reach reach = ObjectRecorder::ReachOf(object.Facts().Functions()[inObject]);
        // A name without the file before it is meant by others, whatever the object says.
        function.reach =
            graph_.nodes[i].isQualified || reach == Reach::kWeak ? reach : Reach::kGlobal;
        function.frameSize = std::max(function.frameSize, SizeOf(object.FrameBytes(inObject)));
      }
    }
    const auto firstOther = static_cast<uint32_t>(recording_.functions.size());
    NoteUnknown(object, object.RecordOthers());
    for (uint32_t i = firstOther; i < recording_.functions.size(); ++i) {
      uint32_t& function = FunctionOfTitle(recording_.names[recording_.functions[i].name]);
      function = function == kNone ? i : function;
    }
    if (!object.Facts().KnowsCalls()) {
      Note("calls-not-looked-for", std::string(messages_.Text(MessageKey::kNoteUnknownMachine)),
           files_.objectPath, 0);
    }
  }

  void NoteUnknown(const ObjectRecorder& object, const std::vector<uint32_t>& unknown) {
    if (unknown.empty()) {
      return;
    }
    std::vector<std::string_view> names;
    names.reserve(unknown.size());
    for (const uint32_t function : unknown) {
      names.push_back(object.Facts().Functions()[function].name);
    }
    Note("stale-input",
         messages_.FormatMessageText(MessageKey::kNoteNotInGraph,
                                     {files_.objectPath, NamesOf(names)}),
         files_.graphPath, 0);
  }

  void RecordEdges() {
    recording_.calls.reserve(recording_.calls.size() + graph_.edges.size());
    std::string_view lastTarget;  // calls of one function often stand together
    uint32_t title = kNone;
    for (const CallGraphEdge& edge : graph_.edges) {
      if (edge.sourceNode == CallGraphEdge::kNoNode) {
        continue;  // noted as a fault
      }
      const uint32_t caller = functionOfNode_[edge.sourceNode];
      if (edge.target == CallGraphFile::kIndirectCall) {
        RecordSite(caller, ReadSourcePlace(edge.place));
        continue;
      }
      if (title == kNone || edge.target != lastTarget) {
        title = TitleOf(edge.target);
        lastTarget = edge.target;
      }
      if (std::exchange(titleFacts_[title].lastCaller, caller) != caller) {
        RecordEdge(caller, title, edge.target);
      }
    }
  }

  void RecordSite(uint32_t caller, const SourcePlace& place) {
    const uint32_t file = place.file.empty() ? kNone : FileOf(place.file);
    recording_.indirectSites.push_back({caller, file, place.line, place.column});
  }

  void RecordEdge(uint32_t caller, uint32_t title, std::string_view target) {
    uint32_t local = titleFacts_[title].function;
    if (local == kNone && SymbolOf(graph_, target).size() != target.size()) {
      // By its symbol alone: what only the object shows.
      local = FunctionOfTitle(SymbolOf(graph_, target));
    }
    if (local != kNone) {
      recording_.calls.push_back({.caller = caller, .target = local, .isLocal = true});
      return;
    }
    uint32_t& name = titleFacts_[title].name;
    if (name == kNone) {
      name = NameOf(SymbolOf(graph_, target), title);
    }
    recording_.calls.push_back({.caller = caller, .target = name, .isLocal = false});
  }

  void RecordHiddenCalls(ObjectRecorder& object) {
    size_t noted = 0;
    for (const ObjectMatch::HiddenCall& hidden : match_.hiddenCalls) {
      const ObjectCall& call = object.Facts().Calls()[hidden.call];
      const bool inGraph = hidden.node != ObjectMatch::kNone;
      const uint32_t caller = inGraph ? functionOfNode_[hidden.node]
                              : call.caller != ObjectCall::kNoFunction
                                  ? object.FunctionOf(call.caller)
                                  : kNone;
      if (caller == kNone) {
        continue;
      }
      object.RecordCall(caller, call);
      if (!inGraph) {
        continue;
      }
      UnitRecording::Function& function = recording_.functions[caller];
      // Without a frame there is no place for what a call needs: written by hand.
      if (!call.isJump && graph_.nodes[hidden.node].bytes == 0) {
        function.isSizeUnknown = true;
      }
      if (++noted <= kMostHiddenCalls) {
        NoteHiddenCall(function, caller, call.target);
      }
    }
  }

  void NoteHiddenCall(const UnitRecording::Function& function, uint32_t number,
                      std::string_view target) {
    const std::string_view name = recording_.names[function.name];
    const bool placed = function.file != kNone;
    Note("hidden-call",
         messages_.FormatMessageText(MessageKey::kNoteHiddenCallAdded, {name, target}),
         placed ? recording_.files[function.file] : files_.graphPath, placed ? function.line : 0,
         number);
  }

  // What calls nothing may use it without saying so.
  void AddRedZones() {
    std::vector<bool> calls(recording_.functions.size(), false);
    for (const UnitRecording::Call& call : recording_.calls) {
      calls[call.caller] = true;
    }
    for (const UnitRecording::IndirectSite& site : recording_.indirectSites) {
      calls[site.function] = true;
    }
    for (uint32_t i = 0; i < recording_.functions.size(); ++i) {
      UnitRecording::Function& function = recording_.functions[i];
      if (!calls[i] && !function.isAlias && function.frameSize != kOverSize) {
        function.frameSize = SizeOf(uint64_t{function.frameSize} + kRedZone);
      }
    }
  }

  const UnitFiles& files_;
  const StkMessages& messages_;
  UnitRecording& recording_;
  const CallGraphFile graph_;
  ObjectMatch match_;
  NameTable titles_;
  std::vector<TitleFacts> titleFacts_;  // by title
  std::vector<uint32_t> functionOfNode_;
  std::string_view lastFileText_;
  uint32_t lastFile_ = kNone;
};

}  // namespace

void RecordUnit(const UnitFiles& files, const StkMessages& messages, UnitRecording& recording) {
  UnitRecorder(files, messages, recording).Record();
}

}  // namespace velkor
