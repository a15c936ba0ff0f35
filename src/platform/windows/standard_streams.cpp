#include "platform/standard_streams.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <windows.h>

#include "platform/taken_input.h"

namespace velkor {
namespace {

bool HasReaderGone(DWORD failure) {
  return failure == ERROR_BROKEN_PIPE || failure == ERROR_NO_DATA;
}

class StandardOutput : public OutputFile {
 public:
  bool Write(std::string_view bytes) override {
    constexpr size_t kPortion = size_t{1} << 20;
    while (!bytes.empty() && !readerGone_) {
      DWORD written = 0;
      const auto portion = static_cast<DWORD>(std::min(bytes.size(), kPortion));
      if (WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), portion, &written, nullptr) ==
          0) {
        readerGone_ = HasReaderGone(GetLastError());
        return readerGone_;
      }
      bytes.remove_prefix(written);
    }
    return true;
  }
  bool Synchronize() override { return true; }
  bool Close() override { return true; }

 private:
  bool readerGone_ = false;
};

}  // namespace

std::unique_ptr<InputFile> OpenStandardInput() {
  std::array<char, 65536> buffer{};
  std::string bytes;
  for (;;) {
    DWORD taken = 0;
    const bool failed = ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer.data(),
                                 static_cast<DWORD>(buffer.size()), &taken, nullptr) == 0;
    if (failed ? !HasReaderGone(GetLastError()) : bytes.size() > TakenInput::kMostBytes) {
      return nullptr;
    }
    if (taken == 0) {
      return std::make_unique<TakenInput>(std::move(bytes));
    }
    bytes.append(buffer.data(), taken);
  }
}

std::unique_ptr<OutputFile> OpenStandardOutput() {
  return std::make_unique<StandardOutput>();
}

}  // namespace velkor
