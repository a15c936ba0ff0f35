#pragma once

namespace velkor {
struct StkFunction;
}  // namespace velkor

namespace velkor::ui {

// What the call tree knows of one of its nodes, and the function list reads of the selected one.
struct NodeRecord {
  StkFunction* function = nullptr;
  bool onMaximumChain = false;  // its total is the largest among its siblings
  bool repeated = false;        // recursive, and stands on one of its ancestors: no children
};

}  // namespace velkor::ui
