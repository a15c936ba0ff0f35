#include "platform/windows/host_permissions.h"

#include <memory>
#include <windows.h>

#include <aclapi.h>

namespace velkor {
namespace {

struct FreeDescriptor {
  void operator()(void* descriptor) const { LocalFree(descriptor); }
};

// An entry that comes from the folder comes from it again; one of the file itself stays its own.
SECURITY_INFORMATION Inheritance(PSECURITY_DESCRIPTOR descriptor) {
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  const bool isOwn = GetSecurityDescriptorControl(descriptor, &control, &revision) != 0 &&
                     (control & SE_DACL_PROTECTED) != 0;
  return isOwn ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION;
}

}  // namespace

bool CopyPermissions(const std::wstring& from, const std::wstring& to) {
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR found = nullptr;
  if (GetNamedSecurityInfoW(from.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                            nullptr, &list, nullptr, &found) != ERROR_SUCCESS) {
    return true;
  }
  const std::unique_ptr<void, FreeDescriptor> freeing(found);
  std::wstring changed = to;
  const DWORD failure = SetNamedSecurityInfoW(
      changed.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | Inheritance(found), nullptr,
      nullptr, list, nullptr);
  return failure == ERROR_SUCCESS || failure == ERROR_NOT_SUPPORTED ||
         failure == ERROR_INVALID_FUNCTION;
}

}  // namespace velkor
