#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "readers/gcc/call_graph_node.h"

namespace velkor {

struct CallGraphEdge {
  static constexpr uint32_t kNoNode = UINT32_MAX;

  std::string_view source;
  std::string_view target;
  std::string_view place;         // as written: for ReadSourcePlace; empty where it has none
  uint32_t sourceNode = kNoNode;  // the function or triangle of that title
  uint32_t textLine = 0;
};

enum class CallGraphFault : uint8_t {
  kUnknownLine,    // a line of no known form: what it says is lost
  kBeforeGraph,    // the line "graph" does not come first
  kAfterEnd,       // a line after the closing brace; it is read
  kNoEnd,          // the file does not end with the closing brace: it was cut
  kNoSize,         // a function without "bytes", where others have them
  kNoSizes,        // no function has any; the line of the first one
  kUnknownSource,  // an edge from what the file does not define
  kDynamicCount,   // other than the count of listed dynamic objects says
};

// A call graph as GCC writes it for one translation unit or one partition of a linked program
// (-fcallgraph-info). All texts lie in the bytes that were read, as written.
struct CallGraphFile {
  static constexpr std::string_view kIndirectCall = "__indirect_call";  // title of every pointer

  struct Fault {
    CallGraphFault fault;
    uint32_t line;
  };

  std::string_view title;
  std::vector<CallGraphNode> nodes;
  std::vector<CallGraphEdge> edges;
  std::vector<DynamicObject> dynamicObjects;
  std::vector<Fault> faults;  // ordered by line
  bool isWhole = true;        // no faults
};

// Any bytes may be given; they belong to the caller and must outlive what is answered.
CallGraphFile ReadCallGraph(std::string_view bytes);

// The linker's name within a title of that file.
std::string_view SymbolOf(const CallGraphFile& file, std::string_view title);

// As a phrase: "line of no known form".
std::string_view TextOf(CallGraphFault fault);

}  // namespace velkor
