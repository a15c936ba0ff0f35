#include "ui/views/callers_model.h"

#include "ui/views/function_icons.h"

namespace velkor::ui {

namespace {

constexpr FunctionCell kCells[] = {FunctionCell::kFunction, FunctionCell::kTotal,
                                   FunctionCell::kFrame, FunctionCell::kFile};

}  // namespace

CallersModel::CallersModel(UiContext& context, QObject* parent)
    : QAbstractItemModel(parent),
      context_(context),
      headers_(CellHeaders(context)),
      kinds_(KindsFrom(context)) {
  for (size_t kind = 0; kind < icons_.size(); ++kind) {
    icons_[kind] = TreeIcon(static_cast<int>(kind));
  }
}

void CallersModel::Clear() {
  beginResetModel();
  levels_.clear();
  callers_ = nullptr;
  endResetModel();
}

void CallersModel::Show(StkFunction& function, const CallerIndex& callers) {
  beginResetModel();
  callers_ = &callers;
  levels_.clear();
  levels_.push_back({MakeNode(function, nullptr, 0)});
  endResetModel();
}

void CallersModel::Refresh() {
  if (!levels_.empty()) {
    emit dataChanged(index(0, 0), index(0, kColumnCount - 1));
  }
}

StkFunction* CallersModel::FunctionOf(const QModelIndex& index) const {
  return index.isValid() && !context_.document.BelongsToJob() ? NodeOf(index).function : nullptr;
}

QModelIndex CallersModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column < 0 || column >= kColumnCount || row >= rowCount(parent)) {
    return {};
  }
  const Level& level = parent.isValid() ? levels_[NodeOf(parent).children] : levels_.front();
  return createIndex(row, column, &level[static_cast<size_t>(row)]);
}

QModelIndex CallersModel::parent(const QModelIndex& index) const {
  const Node* parent = index.isValid() ? NodeOf(index).parent : nullptr;
  return parent ? createIndex(parent->row, 0, parent) : QModelIndex();
}

int CallersModel::rowCount(const QModelIndex& parent) const {
  if (levels_.empty() || parent.column() > 0) {
    return 0;
  }
  if (!parent.isValid()) {
    return static_cast<int>(levels_.front().size());
  }
  const uint32_t level = NodeOf(parent).children;
  return level == kNoLevel ? 0 : static_cast<int>(levels_[level].size());
}

int CallersModel::columnCount(const QModelIndex&) const {
  return kColumnCount;
}

bool CallersModel::hasChildren(const QModelIndex& parent) const {
  return parent.isValid() ? parent.column() == 0 && NodeOf(parent).hasCallers : !levels_.empty();
}

bool CallersModel::canFetchMore(const QModelIndex& parent) const {
  return parent.isValid() && NodeOf(parent).hasCallers && NodeOf(parent).children == kNoLevel &&
         !context_.document.BelongsToJob();
}

void CallersModel::fetchMore(const QModelIndex& parent) {
  if (!canFetchMore(parent)) {
    return;
  }
  Node& node = NodeOf(parent);
  const StkFunctionList& all = context_.document.FunctionTable()->Functions();
  const std::span<const uint32_t> callers = callers_->Of(*node.function);
  beginInsertRows(parent, 0, static_cast<int>(callers.size()) - 1);
  Level level;
  level.reserve(callers.size());
  for (const uint32_t caller : callers) {
    level.push_back(MakeNode(*all[caller], &node, static_cast<int>(level.size())));
  }
  levels_.push_back(std::move(level));
  node.children = static_cast<uint32_t>(levels_.size() - 1);
  endInsertRows();
}

QVariant CallersModel::data(const QModelIndex& index, int role) const {
  const StkFunction* function = FunctionOf(index);
  if (!function) {
    return {};
  }
  const CodePage& codePage = context_.host.codePage;
  const bool isName = index.column() == kName;
  const auto icon = static_cast<size_t>(IconIndex(*function, false));
  switch (role) {
    case Qt::DisplayRole:
      return CellText(*function, kCells[index.column()], nullptr, codePage);
    case Qt::ToolTipRole:
      return WholeName(*function, codePage);
    case Qt::DecorationRole:
      return isName ? icons_[icon] : QVariant();
    case Qt::AccessibleDescriptionRole:
      return isName ? kinds_[icon] : headerData(index.column(), Qt::Horizontal, Qt::DisplayRole);
    case Qt::TextAlignmentRole:
      return headerData(index.column(), Qt::Horizontal, role);
    default:
      return {};
  }
}

QVariant CallersModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kColumnCount) {
    return {};
  }
  if (role == Qt::DisplayRole) {
    return headers_[static_cast<size_t>(kCells[section])];
  }
  if (role == Qt::TextAlignmentRole) {
    return QVariant(Qt::AlignVCenter |
                    (IsNumberCell(kCells[section]) ? Qt::AlignRight : Qt::AlignLeft));
  }
  return {};
}

CallersModel::Node& CallersModel::NodeOf(const QModelIndex& index) {
  return *static_cast<Node*>(index.internalPointer());
}

CallersModel::Node CallersModel::MakeNode(StkFunction& function, Node* parent, int row) const {
  const Node* above = parent;
  while (above && above->function != &function && function.Is(FN_RECURSIVE)) {
    above = above->parent;
  }
  const bool isRepeated = above && above->function == &function;
  return {.function = &function,
          .parent = parent,
          .row = row,
          .hasCallers = !isRepeated && !callers_->Of(function).empty()};
}

}  // namespace velkor::ui
