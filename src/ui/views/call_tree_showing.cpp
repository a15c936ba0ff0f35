#include <QHeaderView>
#include <QResizeEvent>
#include <algorithm>
#include <utility>

#include "ui/views/call_tree_view.h"
#include "ui/wait_cursor.h"

namespace velkor::ui {

std::optional<CommandState> CStkTreeView::StateOfTree(Command command) const {
  switch (command) {
    case Command::kShowTotals:
      return CommandState{true, totalsShown_};
    case Command::kTreeByModule:
      return CommandState{true, order_ == TreeOrder::kModule};
    case Command::kTreeBySize:
      return CommandState{true, order_ == TreeOrder::kSize};
    case Command::kOpenMaximumChain:
      return CommandState{SelectedIndex().isValid() && !IsBusy()};
    default:
      return std::nullopt;
  }
}

void CStkTreeView::ExecuteOfTree(Command command) {
  switch (command) {
    case Command::kShowTotals:
      return ShowTotals(!totalsShown_);
    case Command::kTreeByModule:
      return SetOrder(TreeOrder::kModule);
    case Command::kTreeBySize:
      return SetOrder(TreeOrder::kSize);
    default:
      return OpenMaximumChain();
  }
}

void CStkTreeView::ShowTotals(bool shown) {
  totalsShown_ = shown;
  model_->SetBehindName(
      shown ? [this](const StkFunction& function) { return BehindName(function); }
            : CallTreeModel::BehindName());
  header()->setMinimumSectionSize(0);
  GrowColumn();
  viewport()->update();
}

QString CStkTreeView::BehindName(const StkFunction& function) const {
  const StkBounds* bounds = context_.document.Bounds();
  return bounds ? needs_.TotalAndNeed(function, *bounds) : QString();
}

void CStkTreeView::SetOrder(TreeOrder order) {
  if (order == order_ || IsBusy()) {
    return;
  }
  const WaitCursor waiting;
  opening_->Stop();
  order_ = order;
  model_->SetOrder(order);
  Rebuild();
}

void CStkTreeView::OpenMaximumChain() {
  const QPersistentModelIndex first = SelectedIndex();
  opening_->Start(
      first, [this](const QModelIndex& node) { return model_->MaximumChild(node); },
      [this, first](const QModelIndex& last) { ScrollToChain(first, last); });
}

void CStkTreeView::ShowEntry(const StkFunction& function) {
  ShowPath({&function});
}

void CStkTreeView::ShowPath(std::vector<const StkFunction*> path) {
  const int row = path.empty() || IsBusy() ? -1 : model_->RowOf(*path.front());
  if (row < 0) {
    return;
  }
  const QPersistentModelIndex first = model_->index(row, 0);
  auto next = [this, path = std::move(path), step = size_t{0}](const QModelIndex& node) mutable {
    ++step;
    return step < path.size() ? model_->ChildOf(node, *path[step]) : -1;
  };
  opening_->Start(first, std::move(next), [this, first](const QModelIndex& last) {
    setCurrentIndex(last);
    ScrollToChain(first, last);
    GrowColumn();
  });
}

// Both, where there is room for that; else the last of a path that is selected, or the first.
void CStkTreeView::ScrollToChain(const QModelIndex& first, const QModelIndex& last) {
  scrollTo(last);
  if (!first.isValid() || SelectedIndex() != last) {
    scrollTo(first);
  }
  GrowColumn();
}

// A pane or a scroll bar that takes some of its height does not hide what is selected.
void CStkTreeView::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  const QModelIndex selected = SelectedIndex();
  const QRect row = selected.isValid() ? visualRect(selected) : QRect();
  if (row.isValid() && row.top() >= 0 && row.top() < event->oldSize().height() &&
      row.bottom() >= viewport()->height()) {
    QTreeView::scrollTo(selected);
  }
}

// That reports name first: of those not only reached through pointers the one that takes the most,
// the first in table order of equal ones.
QModelIndex CStkTreeView::LargestEntry() const {
  const StkBounds* bounds = context_.document.Bounds();
  const StkFunctionList& roots = Roots();
  if (roots.empty() || !bounds) {
    return {};
  }
  const auto rank = [bounds](const StkFunction* root) {
    const bool throughPointers = root->Is(FN_ADDRESS_TAKEN) && !root->Is(FN_ENTRY);
    return std::pair(!throughPointers, bounds->Known(*root));
  };
  const auto isLess = [&rank](const StkFunction* left, const StkFunction* right) {
    return rank(left) < rank(right);
  };
  const StkFunction& largest = **std::max_element(roots.begin(), roots.end(), isLess);
  return model_->index(model_->RowOf(largest), 0);
}

}  // namespace velkor::ui
