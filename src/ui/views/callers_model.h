#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <array>
#include <functional>
#include <vector>

#include "ui/navigation/caller_index.h"
#include "ui/views/accessible_texts.h"
#include "ui/views/function_cells.h"

namespace velkor::ui {

// One function, and under each node the functions that call its function: the call graph the other
// way round. A level is made when its node is first expanded; a function that stands on one of its
// own ancestors has no children, which closes every cycle. Refers to the document's functions; the
// owner clears it before they go. User-interface thread.
class CallersModel : public QAbstractItemModel {
 public:
  enum Column { kName, kTotal, kFrame, kFile, kColumnCount };

  CallersModel(UiContext& context, QObject* parent);

  void Clear();
  // callers must stay until the next Clear or Show.
  void Show(StkFunction& function, const CallerIndex& callers);
  // The same nodes, whose texts may read otherwise.
  void Refresh();
  // None while a job has the functions.
  StkFunction* FunctionOf(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  static constexpr uint32_t kNoLevel = 0;  // the top level is nobody's children

  struct Node {
    StkFunction* function = nullptr;
    Node* parent = nullptr;
    uint32_t children = kNoLevel;  // the level of its children once they are made
    int row = 0;
    bool hasCallers = false;  // that are shown below it
  };
  // All children of one node. A level never grows, so its nodes never move.
  using Level = std::vector<Node>;

  static Node& NodeOf(const QModelIndex& index);
  Node MakeNode(StkFunction& function, Node* parent, int row) const;

  UiContext& context_;
  const CellTexts headers_;
  const KindDescriptions kinds_;
  std::array<QIcon, 5> icons_;
  const CallerIndex* callers_ = nullptr;
  std::vector<Level> levels_;  // the top level first
};

}  // namespace velkor::ui
