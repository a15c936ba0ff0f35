#include "ui/status_bar.h"

#include <algorithm>

namespace velkor::ui {

namespace {

constexpr int kProgressWidth = 120;
constexpr int kParts = 1000;

}  // namespace

CStkStatusBar::CStkStatusBar(const QString& progressName, QWidget* parent)
    : QStatusBar(parent),
      idle_(new QLabel(this)),
      stacks_(new QLabel(this)),
      bar_(new QProgressBar(this)) {
  addWidget(idle_, 1);
  bar_->setRange(0, kParts);
  bar_->setValue(0);
  bar_->setTextVisible(false);
  bar_->setFixedWidth(kProgressWidth);
  bar_->setMaximumHeight(fontMetrics().height());
  bar_->setAccessibleName(progressName);
  addPermanentWidget(stacks_);
  stacks_->hide();
  addPermanentWidget(bar_);
}

// A range of nothing shows nothing.
void CStkStatusBar::SetPosition(uint64_t position) {
  position_ = std::min(position, range_);
  const double part =
      range_ == 0 ? 0 : static_cast<double>(position_) / static_cast<double>(range_);
  bar_->setValue(static_cast<int>(part * kParts));
}

void CStkStatusBar::SetRange(uint64_t range) {
  range_ = range;
  SetPosition(position_);
}

void CStkStatusBar::StepIt() {
  SetPosition(position_ + 1);
}

}  // namespace velkor::ui
