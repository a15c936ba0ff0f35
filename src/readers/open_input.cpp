#include "readers/open_input.h"

#include "readers/tarn/tarn_input.h"

namespace velkor {

std::unique_ptr<ProgramInput> OpenInput(std::string_view path, Host& host, StkReporter& reporter) {
  return TarnInput::Open(path, host, reporter);
}

}  // namespace velkor
