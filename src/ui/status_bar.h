#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <cstdint>

#include "document/job_monitor.h"

namespace velkor::ui {

// The bar below the views: the idle text or the prompt of the command under the pointer, then
// what the stacks need in short, and the progress of the running job at the right end.
class CStkStatusBar : public QStatusBar, public ProgressBar {
 public:
  explicit CStkStatusBar(const QString& progressName, QWidget* parent = nullptr);

  // What it says while no command is pointed at.
  void SetIdleText(const QString& text) { idle_->setText(text); }

  // In short, of the stacks; empty: nothing is stated of any.
  void SetStacksText(const QString& text) {
    stacks_->setText(text);
    stacks_->setVisible(!text.isEmpty());
  }

  void SetPosition(uint64_t position) override;
  void SetRange(uint64_t range) override;
  void StepIt() override;

 private:
  // Owned by the Qt parent.
  QLabel* idle_;
  QLabel* stacks_;
  QProgressBar* bar_;  // shows thousandths
  uint64_t position_ = 0;
  uint64_t range_ = 100;
};

}  // namespace velkor::ui
