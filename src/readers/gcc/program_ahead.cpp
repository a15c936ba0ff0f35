#include "readers/gcc/program_ahead.h"

#include <utility>

#include "readers/gcc/whole_file.h"

namespace velkor {

ProgramAhead::ProgramAhead(Host& host, std::string path) : host_(host), path_(std::move(path)) {
  thread_ = StartWorkers(host_.threads == 1 ? 0 : 1, [this] { Read(); });
}

ProgramAhead::~ProgramAhead() {
  unwanted_.request_stop();
}

ProgramAhead::Result ProgramAhead::Take() {
  if (thread_.empty()) {
    Read();
  }
  thread_.clear();
  if (failure_) {
    std::rethrow_exception(failure_);
  }
  return std::move(result_);
}

void ProgramAhead::Read() {
  try {
    const OpenResult<InputFile> opened = host_.files.OpenForRead(path_);
    if (!opened.file) {
      return;
    }
    WholeFile file(*opened.file);
    result_.isOpened = true;
    result_.isCutShort = file.IsCutShort();
    result_.program = std::make_unique<LinkedProgram>(std::move(file), unwanted_.get_token());
  } catch (...) {
    failure_ = std::current_exception();
  }
}

}  // namespace velkor
