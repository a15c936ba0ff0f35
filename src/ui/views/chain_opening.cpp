#include "ui/views/chain_opening.h"

#include <utility>

namespace velkor::ui {

namespace {

constexpr qint64 kSliceMilliseconds = 15;

}  // namespace

ChainOpening::ChainOpening(QTreeView& tree) : QObject(&tree), tree_(tree) {
  timer_.setInterval(0);
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, [this] { Work(); });
}

void ChainOpening::Start(const QModelIndex& from, NextRow next, Done done) {
  node_ = from;
  next_ = std::move(next);
  done_ = std::move(done);
  levels_ = 0;
  Work();
}

void ChainOpening::Stop() {
  timer_.stop();
  node_ = QModelIndex();
}

void ChainOpening::Work() {
  QElapsedTimer time;
  time.start();
  working_ = true;
  while (OpenNext()) {
    if (time.elapsed() >= kSliceMilliseconds) {
      timer_.start();
      break;
    }
  }
  working_ = false;
  if (!timer_.isActive() && node_.isValid()) {
    done_(node_);
  }
}

bool ChainOpening::OpenNext() {
  if (!node_.isValid() || levels_ >= kMostLevels) {
    return false;
  }
  QAbstractItemModel& model = *tree_.model();
  const QModelIndex node = node_;
  if (model.canFetchMore(node)) {
    model.fetchMore(node);
  }
  const int row = next_(node);
  if (row < 0) {
    return false;
  }
  tree_.expand(node);
  node_ = model.index(row, 0, node);
  ++levels_;
  return true;
}

}  // namespace velkor::ui
