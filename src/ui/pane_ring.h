#pragma once

#include <QWidget>
#include <vector>

#include "ui/commands/command_target.h"

namespace velkor::ui {

// Of a table, tree or text: the panes that a small screen holds together leave each little more
// than a row below its header.
constexpr int kLeastViewHeight = 48;

// The parts of a window that have the keyboard by turns, each of which acts on commands while it
// has. Refers to them. User-interface thread.
class PaneRing {
 public:
  // A widget that is a command target.
  template <typename View>
  void Add(View& view) {
    panes_.push_back({&view, &view});
  }

  // Of the pane that is, or holds, the widget; none: nobody.
  CommandTarget* Holder(const QWidget& focused) const;
  // The next that is seen, or the one before (step -1); none: nothing is.
  QWidget* Next(const CommandTarget* active, int step) const;
  // It is in a panel that has been closed.
  bool IsHidden(const CommandTarget* active, const QWidget& window) const;

 private:
  struct Pane {
    QWidget* widget;
    CommandTarget* target;
  };

  std::vector<Pane> panes_;
};

}  // namespace velkor::ui
