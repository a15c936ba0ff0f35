#include "readers/gcc/call_graph_file.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "readers/gcc/call_graph_label.h"
#include "readers/gcc/text_ends.h"

namespace velkor {
namespace {

// What stands before the mark, which is taken as well; none where there is no mark.
std::optional<std::string_view> TakeUntil(std::string_view& text, std::string_view mark) {
  const size_t length = text.find(mark);
  if (length == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view taken = text.substr(0, length);
  text.remove_prefix(length + mark.size());
  return taken;
}

bool IsQualified(const CallGraphFile& file, std::string_view title) {
  const std::string_view own = file.title;
  return !own.empty() && title.size() > own.size() && title[own.size()] == ':' &&
         title.starts_with(own);
}

std::string_view SymbolOfTitle(const CallGraphFile& file, std::string_view title,
                               bool isQualified) {
  title.remove_prefix(isQualified ? file.title.size() + 1 : 0);
  TakePrefix(title, "*");
  return title;
}

class CallGraphReader {
 public:
  explicit CallGraphReader(std::string_view bytes) : bytes_(bytes) {}

  CallGraphFile Read() {
    // Somewhat fewer than a file of that length usually has.
    file_.nodes.reserve(bytes_.size() / 512);
    file_.edges.reserve(bytes_.size() / 256);
    while (!bytes_.empty()) {
      const size_t length = std::min(bytes_.find('\n'), bytes_.size());
      std::string_view line = bytes_.substr(0, length);
      bytes_.remove_prefix(std::min(length + 1, bytes_.size()));
      ++line_;
      TakeSuffix(line, "\r");  // written as text on Windows
      HandleLine(line);
    }
    if (!ended_) {
      AddFault(CallGraphFault::kNoEnd, line_);
    }
    FindOtherSources();
    JoinMissingSizes();
    std::ranges::stable_sort(file_.faults, {}, &CallGraphFile::Fault::line);
    file_.isWhole = file_.faults.empty();
    return std::move(file_);
  }

 private:
  using Shape = CallGraphNode::Shape;
  static constexpr char kTargetMark[] = "\" targetname: \"";

  struct LineForm {
    std::string_view start;
    bool (CallGraphReader::*handle)(std::string_view rest);
  };

  void HandleLine(std::string_view line) {
    static constexpr LineForm kLineForms[] = {
        {"edge: { sourcename: \"", &CallGraphReader::HandleEdge},
        {"node: { title: \"", &CallGraphReader::HandleNode},
        {"graph: { title: \"", &CallGraphReader::HandleGraph},
        {"}", &CallGraphReader::HandleEnd},
    };
    const bool afterEnd = ended_;
    for (const LineForm& form : kLineForms) {
      std::string_view rest = line;
      if (TakePrefix(rest, form.start)) {
        if (!(this->*form.handle)(rest)) {
          AddFault(CallGraphFault::kUnknownLine, line_);
        } else if (afterEnd) {
          AddFault(CallGraphFault::kAfterEnd, line_);
        } else if (line_ == 1 && file_.title.data() == nullptr) {
          AddFault(CallGraphFault::kBeforeGraph, line_);
        }
        return;
      }
    }
    AddFault(CallGraphFault::kUnknownLine, line_);
  }

  bool HandleGraph(std::string_view rest) {
    if (file_.title.data() != nullptr || !TakeSuffix(rest, "\"")) {
      return false;
    }
    file_.title = rest;
    return true;
  }

  bool HandleNode(std::string_view rest) {
    CallGraphNode node;
    node.textLine = line_;
    const std::optional<std::string_view> title = TakeUntil(rest, "\" label: \"");
    if (!title || !TakeShape(rest, node)) {
      return false;
    }
    node.title = *title;
    node.isQualified = IsQualified(file_, *title);
    node.symbol = SymbolOfTitle(file_, *title, node.isQualified);
    if (!ReadNodeLabel(rest, node, file_.dynamicObjects)) {
      AddFault(node.frame == CallGraphNode::Frame::kMissing ? CallGraphFault::kUnknownLine
                                                            : CallGraphFault::kDynamicCount,
               line_);
    } else if (node.shape == Shape::kFunction && node.frame == CallGraphNode::Frame::kMissing) {
      AddFault(CallGraphFault::kNoSize, line_);
    }
    if (node.shape != Shape::kEllipse) {
      source_ = static_cast<uint32_t>(file_.nodes.size());
    }
    file_.nodes.push_back(node);
    return true;
  }

  static bool TakeShape(std::string_view& rest, CallGraphNode& node) {
    if (!TakeSuffix(rest, " }")) {
      return false;
    }
    if (TakeSuffix(rest, "\" shape : ellipse")) {
      node.shape = Shape::kEllipse;
    } else if (TakeSuffix(rest, "\" shape : triangle")) {
      node.shape = Shape::kTriangle;
    } else {
      return TakeSuffix(rest, "\"");
    }
    return true;
  }

  bool HandleEdge(std::string_view rest) {
    CallGraphEdge edge;
    edge.textLine = line_;
    if (!TakeSource(rest, edge) || !TakeSuffix(rest, "\" }")) {
      return false;
    }
    const std::optional<std::string_view> target = TakeUntil(rest, "\" label: \"");
    edge.target = target ? *target : rest;
    edge.place = target ? rest : std::string_view();
    if (edge.sourceNode == CallGraphEdge::kNoNode) {
      otherSources_.push_back(static_cast<uint32_t>(file_.edges.size()));
    }
    file_.edges.push_back(edge);
    return true;
  }

  // Edges follow their function's node.
  bool TakeSource(std::string_view& rest, CallGraphEdge& edge) const {
    if (source_ != CallGraphEdge::kNoNode) {
      const std::string_view title = file_.nodes[source_].title;
      std::string_view behind = rest;
      if (TakePrefix(behind, title) && TakePrefix(behind, kTargetMark)) {
        edge.source = title;
        edge.sourceNode = source_;
        rest = behind;
        return true;
      }
    }
    const std::optional<std::string_view> source = TakeUntil(rest, kTargetMark);
    edge.source = source.value_or(std::string_view());
    return source.has_value();
  }

  bool HandleEnd(std::string_view rest) {
    ended_ = ended_ || rest.empty();
    return rest.empty();
  }

  void FindOtherSources() {
    if (otherSources_.empty()) {
      return;
    }
    std::unordered_map<std::string_view, uint32_t> byTitle;
    for (uint32_t i = 0; i < file_.nodes.size(); ++i) {
      if (file_.nodes[i].shape != Shape::kEllipse) {
        byTitle.emplace(file_.nodes[i].title, i);
      }
    }
    for (const uint32_t number : otherSources_) {
      CallGraphEdge& edge = file_.edges[number];
      const auto found = byTitle.find(edge.source);
      if (found != byTitle.end()) {
        edge.sourceNode = found->second;
      } else {
        AddFault(CallGraphFault::kUnknownSource, edge.textLine);
      }
    }
  }

  // The compiler was asked for no sizes: one fault says so.
  void JoinMissingSizes() {
    const auto hasSize = [](const CallGraphNode& node) {
      return node.frame != CallGraphNode::Frame::kMissing;
    };
    const auto first =
        std::ranges::find(file_.faults, CallGraphFault::kNoSize, &CallGraphFile::Fault::fault);
    if (first == file_.faults.end() || std::ranges::any_of(file_.nodes, hasSize)) {
      return;
    }
    first->fault = CallGraphFault::kNoSizes;
    std::erase_if(file_.faults, [](const CallGraphFile::Fault& fault) {
      return fault.fault == CallGraphFault::kNoSize;
    });
  }

  void AddFault(CallGraphFault fault, uint32_t line) { file_.faults.push_back({fault, line}); }

  std::string_view bytes_;
  CallGraphFile file_;
  uint32_t line_ = 0;
  uint32_t source_ = CallGraphEdge::kNoNode;  // the function whose edges may follow
  std::vector<uint32_t> otherSources_;        // edges of others
  bool ended_ = false;
};

}  // namespace

CallGraphFile ReadCallGraph(std::string_view bytes) {
  return CallGraphReader(bytes).Read();
}

std::string_view SymbolOf(const CallGraphFile& file, std::string_view title) {
  return SymbolOfTitle(file, title, IsQualified(file, title));
}

std::string_view TextOf(CallGraphFault fault) {
  switch (fault) {
    case CallGraphFault::kUnknownLine:
      return "line of no known form";
    case CallGraphFault::kBeforeGraph:
      return "it does not begin with the line \"graph\"";
    case CallGraphFault::kAfterEnd:
      return "line after the end of the graph";
    case CallGraphFault::kNoEnd:
      return "it does not end with the line \"}\"";
    case CallGraphFault::kNoSize:
      return "function without a size";
    case CallGraphFault::kNoSizes:
      return "no function has a size (compile with -fcallgraph-info=su,da)";
    case CallGraphFault::kUnknownSource:
      return "call from a function that the file does not define";
    case CallGraphFault::kDynamicCount:
      return "the dynamic objects are not as many as stated";
  }
  return {};
}

}  // namespace velkor
