#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace velkor {

// "FILE:LINE:COLUMN". Without numbers ("<built-in>") line and column are 0.
struct SourcePlace {
  std::string_view file;
  uint32_t line = 0;
  uint32_t column = 0;
};

// What is allocated while a function runs: a local array whose length is not constant, or a call
// of alloca (variable "(null)").
struct DynamicObject {
  std::string_view variable;
  SourcePlace place;
};

struct CallGraphNode {
  enum class Shape : uint8_t {
    kFunction,  // defined here
    kEllipse,   // called here, defined elsewhere
    kTriangle,  // another name of the function that its edge leads to
  };
  enum class Frame : uint8_t {
    kMissing,
    kStatic,
    kDynamic,  // bytes is the least
    kBounded,  // dynamic, bytes is the most
  };

  std::string_view title;   // what edges name it by
  std::string_view symbol;  // the linker's name: the title without the file's and without "*"
  std::string_view name;    // for people, often cut
  SourcePlace place;
  uint64_t bytes = 0;  // at most INT64_MAX
  uint32_t firstDynamicObject = 0;
  uint32_t dynamicObjectCount = 0;  // of those that are listed
  uint32_t textLine = 0;            // of the call graph file
  Shape shape = Shape::kFunction;
  Frame frame = Frame::kMissing;
  bool isQualified = false;  // the title begins with the file's: static or weak
};

struct CallGraphEdge {
  static constexpr uint32_t kNoNode = UINT32_MAX;

  std::string_view source;
  std::string_view target;
  SourcePlace place;              // no file where the call has no place
  uint32_t sourceNode = kNoNode;  // the function or triangle of that title
  uint32_t textLine = 0;
};

enum class CallGraphFault : uint8_t {
  kUnknownLine,    // a line of no known form: what it says is lost
  kBeforeGraph,    // the line "graph" does not come first
  kAfterEnd,       // a line after the closing brace; it is read
  kNoEnd,          // the file does not end with the closing brace: it was cut
  kNoSize,         // a function without "bytes"
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
