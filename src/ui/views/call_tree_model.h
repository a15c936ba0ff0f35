#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <array>
#include <functional>
#include <unordered_map>
#include <vector>

#include "ui/views/accessible_texts.h"
#include "ui/views/call_tree_paths.h"
#include "ui/views/node_record.h"

namespace velkor::ui {

// The call graph as a tree: the top-level functions, under each node the functions that its
// function calls. Nodes are made a level at a time, when their parent is first expanded; a
// recursive function that stands on one of its own ancestors has no children, which closes every
// cycle. Texts, icons and whether a node has children are found when asked for. Records stay where
// they are until Clear, Fill or Rebuild. No operation goes deeper into the thread's stack for a
// deeper tree. Refers to functions; the owner clears it before they go. User-interface thread.
class CallTreeModel : public QAbstractItemModel {
 public:
  // isBusy: whether a job is changing the functions. Meanwhile no function is touched: no node is
  // made, and nodes that were shown before keep their looks.
  CallTreeModel(const CodePage& codePage, KindDescriptions kinds, std::function<bool()> isBusy);

  void Clear();
  void Fill(const StkFunctionList& roots);
  // The mark of the maximum chain, for every node that exists.
  void RefreshMarks();

  // The paths of the nodes that are expanded, all their ancestors being so too, and of one node.
  CallTreePaths Save(const std::function<bool(const QModelIndex&)>& isExpanded,
                     const QModelIndex& selected) const;
  struct Restored {
    QModelIndexList expanded;  // parents before their children
    QModelIndex selected;      // the last in tree order with the saved path; invalid: none has it
  };
  // A new tree with the nodes that the saved paths need.
  Restored Rebuild(const StkFunctionList& roots, const CallTreePaths& saved);

  // With its repeated mark as it is now. Stays valid as long as the node.
  const NodeRecord& RecordOf(const QModelIndex& index) const;
  StkFunction& FunctionOf(const QModelIndex& index) const;
  // The first child with the function, made if it has to be; invalid: there is none.
  QModelIndex ChildFor(const StkFunction& function, const QModelIndex& parent);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  static constexpr uint32_t kNoLevel = 0;  // the top level is nobody's children

  struct Node {
    mutable NodeRecord record;  // its repeated mark is found when asked for
    Node* parent = nullptr;
    uint32_t level = 0;            // that the node stands in
    uint32_t children = kNoLevel;  // the level of its children once they are made
    int row = 0;
  };
  // All children of one node. A level never grows, so its nodes never move.
  using Level = std::vector<Node>;
  struct Looks {
    QString text;
    int icon = 0;
    bool hasChildren = false;
  };

  static Node& NodeOf(const QModelIndex& index);
  QModelIndex IndexOf(const Node& node) const;
  Level MakeLevel(Node* parent, StkFunctionSpan functions, StkFunctionSpan more) const;
  void AddTopLevel(const StkFunctionList& roots);
  void AddChildren(Node& node);
  bool IsRepeated(const Node& node) const;
  bool HasChildren(const Node& node) const;
  Looks LooksOf(const Node& node) const;
  QModelIndexList Reopen(const CallTreePaths& saved, const Node*& selected);

  const CodePage& codePage_;
  KindDescriptions kinds_;
  std::function<bool()> isBusy_;
  std::array<QIcon, 5> icons_;
  std::vector<Level> levels_;  // the top level first, every level after that of its parent
  mutable std::unordered_map<const Node*, Looks> shown_;  // for when the functions are busy
};

}  // namespace velkor::ui
