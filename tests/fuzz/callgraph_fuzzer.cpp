#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/fuzzers.h"
#include "fuzz/require.h"
#include "readers/gcc/call_graph_file.h"
#include "readers/gcc/call_graph_label.h"

namespace velkor::testing {

namespace {

using Shape = CallGraphNode::Shape;

std::string Written(const SourcePlace& place) {
  return std::string(place.file) + ":" + std::to_string(place.line) + ":" +
         std::to_string(place.column);
}

std::string Written(const CallGraphFile& file, const CallGraphNode& node) {
  std::string text = "node: { title: \"" + std::string(node.title) + "\" label: \"" +
                     std::string(node.name) + "\\n" + Written(node.place);
  if (node.shape == Shape::kFunction) {
    static constexpr std::string_view kKinds[] = {"", "static", "dynamic", "dynamic,bounded"};
    text += "\\n" + std::to_string(node.bytes) + " bytes (" +
            std::string(kKinds[static_cast<size_t>(node.frame)]) + ")\\n" +
            std::to_string(node.dynamicObjectCount) + " dynamic objects";
    for (uint32_t i = 0; i < node.dynamicObjectCount; ++i) {
      const DynamicObject& object = file.dynamicObjects[node.firstDynamicObject + i];
      text += "\\n " + std::string(object.variable) + " " + Written(object.place);
    }
  }
  text += node.shape == Shape::kEllipse    ? "\" shape : ellipse }\n"
          : node.shape == Shape::kTriangle ? "\" shape : triangle }\n"
                                           : "\" }\n";
  return text;
}

std::string Written(const CallGraphEdge& edge) {
  return "edge: { sourcename: \"" + std::string(edge.source) + "\" targetname: \"" +
         std::string(edge.target) +
         (edge.place.empty() ? "" : "\" label: \"" + Written(ReadSourcePlace(edge.place))) +
         "\" }\n";
}

// All that was read, in the form of the file and in its order.
std::string Written(const CallGraphFile& file) {
  std::string text = "graph: { title: \"" + std::string(file.title) + "\"\n";
  auto edge = file.edges.begin();
  for (const CallGraphNode& node : file.nodes) {
    for (; edge != file.edges.end() && edge->textLine < node.textLine; ++edge) {
      text += Written(*edge);
    }
    text += Written(file, node);
  }
  for (; edge != file.edges.end(); ++edge) {
    text += Written(*edge);
  }
  return text + "}\n";
}

// Whatever a line says, something came of it.
void CheckNoLineIsLost(std::string_view bytes, const CallGraphFile& file) {
  std::vector<bool> seen(static_cast<size_t>(std::ranges::count(bytes, '\n')) + 2);
  for (const CallGraphNode& node : file.nodes) {
    seen.at(node.textLine) = true;
  }
  for (const CallGraphEdge& edge : file.edges) {
    seen.at(edge.textLine) = true;
  }
  for (const CallGraphFile::Fault& fault : file.faults) {
    seen.at(fault.line) = true;
  }
  constexpr std::string_view kTitle = "graph: { title: \"";
  bool titled = false;
  for (size_t line = 1; !bytes.empty(); ++line) {
    std::string_view text = bytes.substr(0, bytes.find('\n'));
    bytes.remove_prefix(std::min(text.size() + 1, bytes.size()));
    text.remove_suffix(text.ends_with('\r') ? 1 : 0);
    const bool isTitle =
        !titled && text.starts_with(kTitle) && text.size() > kTitle.size() && text.ends_with('"');
    titled = titled || isTitle;
    Require(seen[line] || isTitle || text == "}", "a line is lost", text);
  }
}

}  // namespace

void FuzzCallGraph(std::string_view bytes) {
  const CallGraphFile file = ReadCallGraph(bytes);
  CheckNoLineIsLost(bytes, file);
  Require(file.isWhole == file.faults.empty(), "a file with faults is not whole");
  for (const CallGraphEdge& edge : file.edges) {
    Require(edge.sourceNode == CallGraphEdge::kNoNode ||
                (file.nodes.at(edge.sourceNode).title == edge.source &&
                 file.nodes[edge.sourceNode].shape != Shape::kEllipse),
            "an edge begins at the node of its title", edge.source);
  }
  if (file.isWhole) {
    const std::string text = Written(file);
    const CallGraphFile again = ReadCallGraph(text);
    Require(again.isWhole, "what was read from a whole file is whole", text);
    RequireEqual(Written(again), text, "what was read is what stands there");
  }
}

}  // namespace velkor::testing
