#pragma once

#include <cstdint>
#include <string_view>

namespace velkor {

// What the call graph files of GCC tell in the labels of their nodes, and of the nodes themselves.
// All texts lie in the bytes that were read.

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

}  // namespace velkor
