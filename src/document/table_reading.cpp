#include "document/table_reading.h"

#include <system_error>
#include <utility>

#include "document/document.h"

namespace velkor {

StkTableReading::StkTableReading(CStkDoc& document) : document_(document) {
  document_.AddReading(*this);
}

StkTableReading::~StkTableReading() {
  Stop();
  document_.RemoveReading(*this);
}

bool StkTableReading::Start(Work work) {
  Stop();
  if (document_.Bounds() == nullptr || document_.FunctionTable()->Count() == 0) {
    return false;
  }
  document_.FunctionTable()->Callers(0);  // the table finds them when first asked
  stop_ = false;
  try {
    thread_ = std::make_unique<WorkerThread>([this, work = std::move(work)] { Run(work); });
  } catch (const std::system_error&) {
    return false;
  }
  thread_->Resume();
  return true;
}

void StkTableReading::Stop() {
  stop_ = true;
  thread_.reset();
}

void StkTableReading::Run(const Work& work) {
  try {
    work([this] {
      if (stop_) {
        throw Ended();
      }
    });
  } catch (...) {
    // Ended, or there was no memory for it: there is no result.
  }
}

}  // namespace velkor
