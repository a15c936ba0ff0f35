#include "ui/views/call_tree_model.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "core/function_text.h"
#include "ui/shown_text.h"
#include "ui/views/function_cells.h"
#include "ui/views/function_icons.h"
#include "ui/views/largest_total.h"
#include "ui/views/name_delegate.h"
#include "ui/wait_cursor.h"

namespace velkor::ui {

namespace {

// More rows than a screen shows.
constexpr size_t kMaxShown = 4096;

bool CallsAny(const StkFunction& function) {
  return !function.callees.empty() || !function.extraCallees.empty();
}

}  // namespace

CallTreeModel::CallTreeModel(const CodePage& codePage, KindDescriptions kinds,
                             std::function<bool()> isBusy)
    : codePage_(codePage), kinds_(std::move(kinds)), isBusy_(std::move(isBusy)) {
  for (size_t kind = 0; kind < icons_.size(); ++kind) {
    icons_[kind] = TreeIcon(static_cast<int>(kind));
  }
}

void CallTreeModel::SetBehindName(BehindName behindName) {
  behindName_ = std::move(behindName);
  shown_.clear();
}

void CallTreeModel::Clear() {
  Fill({});
}

void CallTreeModel::Fill(const StkFunctionList& roots) {
  beginResetModel();
  AddTopLevel(roots);
  endResetModel();
}

void CallTreeModel::RefreshMarks() {
  shown_.clear();
  for (Level& level : levels_) {
    uint32_t largest = 0;
    if (const Node* parent = level.front().parent) {
      largest = LargestCalleeTotal(*parent->record.function);
    } else {
      for (const Node& node : level) {
        largest = std::max(largest, node.record.function->totalStackSize);
      }
    }
    for (Node& node : level) {
      node.record.onMaximumChain = node.record.function->totalStackSize == largest;
    }
  }
  if (!levels_.empty()) {
    emit dataChanged(IndexOf(levels_.front().front()), IndexOf(levels_.front().back()));
  }
}

CallTreePaths CallTreeModel::Save(const std::function<bool(const QModelIndex&)>& isExpanded,
                                  const QModelIndex& selected) const {
  CallTreePaths paths;
  // For each level the place of its parent; kNowhere when that is hidden in a collapsed branch.
  std::vector<CallTreePaths::Place> places(levels_.size(), CallTreePaths::kNowhere);
  const auto add = [&](const Node& node) {
    return paths.Add(places[node.level], FunctionSpecName(*node.record.function, codePage_));
  };
  for (size_t i = 0; i < levels_.size(); ++i) {
    const Node* parent = levels_[i].front().parent;
    if (!parent) {
      places[i] = CallTreePaths::kTop;
    } else if (places[parent->level] != CallTreePaths::kNowhere && isExpanded(IndexOf(*parent))) {
      places[i] = add(*parent);
      paths.MarkExpanded(places[i]);
    }
  }
  if (selected.isValid() && places[NodeOf(selected).level] != CallTreePaths::kNowhere) {
    paths.SetSelected(add(NodeOf(selected)));
  }
  return paths;
}

CallTreeModel::Restored CallTreeModel::Rebuild(const StkFunctionList& roots,
                                               const CallTreePaths& saved) {
  beginResetModel();
  AddTopLevel(roots);
  Restored restored;
  const Node* selected = nullptr;
  restored.expanded = Reopen(saved, selected);
  endResetModel();
  if (selected) {
    restored.selected = IndexOf(*selected);
  }
  return restored;
}

const NodeRecord& CallTreeModel::RecordOf(const QModelIndex& index) const {
  const Node& node = NodeOf(index);
  node.record.repeated = IsRepeated(node);
  return node.record;
}

StkFunction& CallTreeModel::FunctionOf(const QModelIndex& index) const {
  return *NodeOf(index).record.function;
}

QModelIndex CallTreeModel::ChildFor(const StkFunction& function, const QModelIndex& parent) {
  fetchMore(parent);
  return index(ChildOf(parent, function), 0, parent);
}

QModelIndex CallTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column != 0 || row >= rowCount(parent)) {
    return {};
  }
  const Level& level = parent.isValid() ? levels_[NodeOf(parent).children] : levels_.front();
  return IndexOf(level[static_cast<size_t>(row)]);
}

QModelIndex CallTreeModel::parent(const QModelIndex& index) const {
  const Node* parent = index.isValid() ? NodeOf(index).parent : nullptr;
  return parent ? IndexOf(*parent) : QModelIndex();
}

int CallTreeModel::rowCount(const QModelIndex& parent) const {
  if (levels_.empty() || parent.column() > 0) {
    return 0;
  }
  const uint32_t level = parent.isValid() ? NodeOf(parent).children : 0;
  return parent.isValid() && level == kNoLevel ? 0 : static_cast<int>(levels_[level].size());
}

int CallTreeModel::columnCount(const QModelIndex&) const {
  return 1;
}

bool CallTreeModel::hasChildren(const QModelIndex& parent) const {
  if (!parent.isValid()) {
    return !levels_.empty();
  }
  const Node& node = NodeOf(parent);
  if (node.children != kNoLevel) {
    return true;
  }
  if (!isBusy_()) {
    return HasChildren(node);
  }
  const auto shown = shown_.find(&node);
  return shown != shown_.end() && shown->second.hasChildren;
}

bool CallTreeModel::canFetchMore(const QModelIndex& parent) const {
  return parent.isValid() && NodeOf(parent).children == kNoLevel && !isBusy_() &&
         HasChildren(NodeOf(parent));
}

void CallTreeModel::fetchMore(const QModelIndex& parent) {
  if (!canFetchMore(parent)) {
    return;
  }
  const WaitCursor waiting;
  Node& node = NodeOf(parent);
  const StkFunction& function = *node.record.function;
  const size_t count = function.callees.size() + function.extraCallees.size();
  if (count > 0) {
    beginInsertRows(parent, 0, static_cast<int>(count) - 1);
    AddChildren(node);
    endInsertRows();
  }
}

QVariant CallTreeModel::data(const QModelIndex& index, int role) const {
  if (index.isValid() && role == Qt::ToolTipRole && !isBusy_()) {
    return WholeName(FunctionOf(index), codePage_);
  }
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::DecorationRole &&
                           role != NameDelegate::kBehindNameRole &&
                           role != Qt::AccessibleDescriptionRole)) {
    return {};
  }
  const Node& node = NodeOf(index);
  const bool isBusy = isBusy_();
  if (!isBusy && role == Qt::DisplayRole) {
    return ForScreen(RowName(*node.record.function, codePage_), codePage_);
  }
  auto shown = shown_.find(&node);
  if (!isBusy) {
    if (shown_.size() >= kMaxShown) {
      shown_.clear();
    }
    shown = shown_.insert_or_assign(&node, LooksOf(node)).first;
  } else if (shown == shown_.end()) {
    return {};
  }
  const Looks& looks = shown->second;
  const auto icon = static_cast<size_t>(looks.icon);
  switch (role) {
    case Qt::DisplayRole:
      return looks.text;
    case Qt::DecorationRole:
      return icons_[icon];
    case NameDelegate::kBehindNameRole:
      return looks.behind;
    default:
      return looks.behind.isEmpty() ? kinds_[icon] : kinds_[icon] + ", " + looks.behind;
  }
}

CallTreeModel::Node& CallTreeModel::NodeOf(const QModelIndex& index) {
  return *static_cast<Node*>(index.internalPointer());
}

QModelIndex CallTreeModel::IndexOf(const Node& node) const {
  return createIndex(node.row, 0, &node);
}

CallTreeModel::Level CallTreeModel::MakeLevel(Node* parent, StkFunctionSpan functions,
                                              StkFunctionSpan more) const {
  StkFunctionList all(functions.begin(), functions.end());
  all.insert(all.end(), more.begin(), more.end());
  const uint32_t largest = LargestTotal(all);
  Order(all);
  Level level(all.size());
  for (size_t i = 0; i < level.size(); ++i) {
    StkFunction* function = all[i];
    level[i].record.function = function;
    level[i].record.onMaximumChain = function->totalStackSize == largest;
    level[i].parent = parent;
    level[i].level = static_cast<uint32_t>(levels_.size());
    level[i].row = static_cast<int>(i);
  }
  return level;
}

void CallTreeModel::Order(StkFunctionList& functions) const {
  if (order_ == TreeOrder::kSize) {
    std::ranges::stable_sort(functions, std::greater(), &StkFunction::totalStackSize);
  }
}

template <typename Holds>
int CallTreeModel::FirstChild(const QModelIndex& node, Holds holds) const {
  const uint32_t level = node.isValid() ? NodeOf(node).children : 0;
  if (levels_.empty() || (node.isValid() && level == kNoLevel)) {
    return -1;
  }
  const auto found = std::ranges::find_if(levels_[level], holds);
  return found == levels_[level].end() ? -1 : found->row;
}

int CallTreeModel::RowOf(const StkFunction& root) const {
  return ChildOf({}, root);
}

int CallTreeModel::MaximumChild(const QModelIndex& node) const {
  return FirstChild(node, [](const Node& child) { return child.record.onMaximumChain; });
}

int CallTreeModel::ChildOf(const QModelIndex& node, const StkFunction& function) const {
  return FirstChild(node,
                    [&function](const Node& child) { return child.record.function == &function; });
}

void CallTreeModel::AddTopLevel(const StkFunctionList& roots) {
  shown_.clear();
  levels_.clear();
  if (!roots.empty()) {
    levels_.push_back(MakeLevel(nullptr, roots, {}));
  }
}

void CallTreeModel::AddChildren(Node& node) {
  const StkFunction& function = *node.record.function;
  levels_.push_back(MakeLevel(&node, function.callees, function.extraCallees));
  node.children = static_cast<uint32_t>(levels_.size() - 1);
}

bool CallTreeModel::IsRepeated(const Node& node) const {
  if (!node.record.function->Is(FN_RECURSIVE)) {
    return false;
  }
  const Node* ancestor = node.parent;
  while (ancestor && ancestor->record.function != node.record.function) {
    ancestor = ancestor->parent;
  }
  return ancestor != nullptr;
}

bool CallTreeModel::HasChildren(const Node& node) const {
  return CallsAny(*node.record.function) && !IsRepeated(node);
}

CallTreeModel::Looks CallTreeModel::LooksOf(const Node& node) const {
  const NodeRecord& record = node.record;
  return {ForScreen(RowName(*record.function, codePage_), codePage_),
          behindName_ ? behindName_(*record.function) : QString(),
          IconIndex(*record.function, record.onMaximumChain),
          node.children != kNoLevel || HasChildren(node)};
}

// Makes the children of every node whose saved path is an expanded one, in tree order.
QModelIndexList CallTreeModel::Reopen(const CallTreePaths& saved, const Node*& selected) {
  struct Visit {
    uint32_t level;
    size_t next;
    CallTreePaths::Place parent;
  };
  QModelIndexList expanded;
  std::unordered_set<const StkFunction*> entered;  // recursive ones, from the top to the visit
  std::vector<Visit> visits;
  if (!levels_.empty() && !saved.empty()) {
    visits.push_back({0, 0, CallTreePaths::kTop});
  }
  while (!visits.empty()) {
    Visit& visit = visits.back();
    if (visit.next == levels_[visit.level].size()) {
      if (const Node* parent = levels_[visit.level].front().parent) {
        entered.erase(parent->record.function);
      }
      visits.pop_back();
      continue;
    }
    Node& node = levels_[visit.level][visit.next++];
    const CallTreePaths::Place place =
        saved.Find(visit.parent, FunctionSpecName(*node.record.function, codePage_));
    if (saved.IsSelected(place)) {
      selected = &node;
    }
    const StkFunction* function = node.record.function;
    if (saved.IsExpanded(place) && CallsAny(*function) && !entered.contains(function)) {
      AddChildren(node);
      if (function->Is(FN_RECURSIVE)) {
        entered.insert(function);
      }
      expanded.push_back(IndexOf(node));
      visits.push_back({node.children, 0, place});
    }
  }
  return expanded;
}

}  // namespace velkor::ui
