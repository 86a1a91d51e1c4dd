#include "platform/Shell.h"

#include <string>

#include "platform/windows/System.h"

// Behind the rest of the system's headers, which it needs.
#include <objbase.h>
#include <shellapi.h>

namespace {

// What opens documents may be a component, which needs this around its calls.
class Components {
 public:
  Components()
      : ready_(
            SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE))) {
  }
  Components(Components&&) = delete;
  Components(const Components&) = delete;
  Components& operator=(Components&&) = delete;
  Components& operator=(const Components&) = delete;
  ~Components() {
    if (ready_) CoUninitialize();
  }

 private:
  bool ready_;
};

}  // namespace

void DesktopOpener::Open(const std::string& file, const std::string& folder) {
  if (file.empty() || (file + folder).find('\0') != std::string::npos) return;
  const std::wstring wideFile = Windows::FromAlias(file);
  const std::wstring wideFolder = Windows::FromAlias(folder);
  const Components components;
  SHELLEXECUTEINFOW what = {};
  what.cbSize = sizeof(what);
  // The process may end directly after this, and must not take what it started along.
  what.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
  what.lpVerb = L"open";
  what.lpFile = wideFile.c_str();
  what.lpDirectory = wideFolder.empty() ? nullptr : wideFolder.c_str();
  what.nShow = SW_SHOWNORMAL;
  ShellExecuteExW(&what);
}
