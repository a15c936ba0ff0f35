#pragma once

#include <QProgressBar>
#include <QStatusBar>
#include <cstdint>

#include "document/job_monitor.h"

namespace velkor::ui {

// The bar below the views: the idle text or the prompt of the command under the pointer, and the
// progress of the running job at the right end.
class CStkStatusBar : public QStatusBar, public ProgressBar {
 public:
  CStkStatusBar(const QString& idleText, const QString& progressName, QWidget* parent = nullptr);

  void SetPosition(uint64_t position) override;
  void SetRange(uint64_t range) override;
  void StepIt() override;

 private:
  QProgressBar* bar_;  // owned by the Qt parent; shows thousandths
  uint64_t position_ = 0;
  uint64_t range_ = 100;
};

}  // namespace velkor::ui
