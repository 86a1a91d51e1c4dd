#include "platform/FileSystem.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/windows/Place.h"
#include "platform/windows/System.h"

namespace {

using Windows::FailWith;
using Kind = Windows::Place::Kind;

}  // namespace

FileSystemOptions FileSystemOptions::FromEnvironment() {
  return {};
}

std::string FileSystem::ToDosText(const std::filesystem::path& native) const {
  const std::wstring& asked = native.native();
  const DWORD room = GetFullPathNameW(asked.c_str(), 0, nullptr, nullptr);
  std::wstring full(room, L'\0');
  full.resize(GetFullPathNameW(asked.c_str(), room, full.data(), nullptr));
  if (full.empty()) FailWith("look up", Windows::FromWideLossy(asked), GetLastError());
  full = Windows::ShortForm(full);
  const bool isRoot = full.size() == 3;
  if (full.ends_with(L'\\') && !isRoot) full.pop_back();
  std::optional<std::string> text = Windows::FromWide(full);
  if (text) return *std::move(text);
  // A name with letters that the code page lacks may have a short one.
  std::wstring shortName(full.size() + MAX_PATH, L'\0');
  shortName.resize(GetShortPathNameW(Windows::LongForm(full).c_str(), shortName.data(),
                                     static_cast<DWORD>(shortName.size())));
  text = Windows::FromWide(Windows::ShortForm(shortName));
  if (text && !text->empty()) return *std::move(text);
  text = Windows::AliasOf(full);
  if (text) return *std::move(text);
  Fail("the path \"", Windows::FromWideLossy(full),
       "\" holds a name with a character (here: ?) that DOS path text can't say");
}

std::filesystem::path FileSystem::ToNative(std::string_view path) const {
  const Windows::Place place = Windows::FindPlace(options_, path);
  const bool isMissing =
      place.kind == Kind::kNowhere && place.error == ERROR_PATH_NOT_FOUND && !place.native.empty();
  if (place.kind == Kind::kNowhere && !isMissing) FailWith("look up", path, place.error);
  if (!place.Exists() && !place.asWritten.empty() && !DosPath::IsPlainFileName(place.asWritten))
    FailWith("look up", path, ERROR_INVALID_NAME);
  // What isn't ours doesn't take more than this without the long form.
  constexpr std::size_t kLongest = 240;
  const std::wstring written = Windows::ShortForm(place.native);
  return written.size() > kLongest ? place.native : written;
}
