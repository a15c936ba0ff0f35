#pragma once

#include <QElapsedTimer>
#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>
#include <functional>

namespace velkor::ui {

// Opens a branch of a tree downwards, one node below the other, in short slices of the event loop:
// a chain can be as deep as a program is large. Ends after kMostLevels, which nobody scrolls
// through. Owned by the view that it opens.
class ChainOpening : public QObject {
 public:
  static constexpr int kMostLevels = 5000;
  // Below a node whose children exist, the row of the next one; -1: the chain ends at the node.
  using NextRow = std::function<int(const QModelIndex& node)>;
  using Done = std::function<void(const QModelIndex& last)>;

  explicit ChainOpening(QTreeView& tree);

  // In place of an opening that has not ended. Most of the time done before it returns.
  void Start(const QModelIndex& from, NextRow next, Done done);
  // done is not called.
  void Stop();
  bool IsRunning() const { return timer_.isActive() || working_; }

 private:
  void Work();
  bool OpenNext();

  QTreeView& tree_;
  QTimer timer_;
  QPersistentModelIndex node_;
  NextRow next_;
  Done done_;
  int levels_ = 0;
  bool working_ = false;
};

}  // namespace velkor::ui
