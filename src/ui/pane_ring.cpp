#include "ui/pane_ring.h"

#include <QRegion>
#include <algorithm>

namespace velkor::ui {

CommandTarget* PaneRing::Holder(const QWidget& focused) const {
  for (const Pane& pane : panes_) {
    if (pane.widget == &focused || pane.widget->isAncestorOf(&focused)) {
      return pane.target;
    }
  }
  return nullptr;
}

QWidget* PaneRing::Next(const CommandTarget* active, int step) const {
  const auto count = static_cast<int>(panes_.size());
  const auto found = std::ranges::find(panes_, active, &Pane::target);
  int at = found == panes_.end() ? 0 : static_cast<int>(found - panes_.begin());
  for (int turns = 0; turns < count; ++turns) {
    at = (at + step + count) % count;
    QWidget* pane = panes_[static_cast<size_t>(at)].widget;
    if (!pane->visibleRegion().isEmpty()) {
      return pane;
    }
  }
  return nullptr;
}

bool PaneRing::IsHidden(const CommandTarget* active, const QWidget& window) const {
  const auto found = std::ranges::find(panes_, active, &Pane::target);
  return found != panes_.end() && !found->widget->isVisibleTo(&window);
}

}  // namespace velkor::ui
