#include "platform/windows/replacing_turn.h"

#include <string_view>
#include <windows.h>

#include "platform/code_page.h"
#include "platform/windows/host_handle.h"
#include "platform/windows/wide_text.h"

namespace velkor {
namespace {

// The same for all spellings of one path; others may have it too, and then wait for each other.
std::wstring NameOf(const std::wstring& target) {
  const size_t end = target.find_last_of(L"\\/:") + 1;
  const auto folder = FactsOf(target.substr(0, end));
  const auto identity = folder ? folder->identity : std::pair<uint64_t, uint64_t>();
  const uint32_t name =
      CodePage::Utf8().HashIgnoreCase(FromWide(std::wstring_view(target).substr(end)));
  return L"Local\\velkor." + std::to_wstring(identity.first) + L"." +
         std::to_wstring(identity.second) + L"." + std::to_wstring(name);
}

bool Take(HANDLE mutex) {
  const DWORD result = WaitForSingleObject(mutex, static_cast<DWORD>(Patience::kPause.count()));
  return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

}  // namespace

ReplacingTurn::ReplacingTurn(const std::wstring& target, const Patience& patience)
    : mutex_(CreateMutexW(nullptr, FALSE, NameOf(target).c_str())), isTaken_(mutex_ == nullptr) {
  while (!isTaken_) {
    isTaken_ = Take(mutex_);
    if (patience.IsOver()) {
      break;
    }
  }
}

ReplacingTurn::~ReplacingTurn() {
  if (mutex_ != nullptr) {
    if (isTaken_) {
      ReleaseMutex(mutex_);
    }
    CloseHandle(mutex_);
  }
}

}  // namespace velkor
