#include "platform/FileSystem.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/Text.h"
#include "platform/posix/Place.h"
#include "platform/posix/System.h"

namespace {

using Posix::FailWith;
using Kind = Posix::Place::Kind;

}  // namespace

FileSystemOptions FileSystemOptions::FromEnvironment() {
  FileSystemOptions options;
  const std::string named = Posix::Environment("WINEPREFIX");
  const std::string home = Posix::Environment("HOME");
  std::error_code ignored;
  if (!named.empty())
    options.winePrefix = named;
  else if (!home.empty() && std::filesystem::is_directory(home + "/.wine", ignored))
    options.winePrefix = home + "/.wine";
  return options;
}

std::string FileSystem::ToDosText(const std::filesystem::path& native) const {
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(native, error);
  const auto isParent = [](const std::filesystem::path& part) { return part == ".."; };
  // What `..` leads to depends on links here, but not in DOS path text.
  if (!error && std::any_of(absolute.begin(), absolute.end(), isParent))
    absolute = std::filesystem::weakly_canonical(absolute, error);
  if (error) FailWith("look up", Text::FromUtf8Lossy(native.native()), error.value());
  const std::optional<std::string> text = Posix::DosTextOf(absolute);
  if (!text)
    Fail("the path \"", Text::FromUtf8Lossy(absolute.native()),
         "\" holds a name with a character (here: ?) that DOS path text can't say");
  return *text;
}

std::filesystem::path FileSystem::ToNative(std::string_view path) const {
  const Posix::Place place = Posix::FindPlace(options_, path);
  if (place.kind == Kind::kNowhere && place.missing.empty()) FailWith("look up", path, place.error);
  std::string native = place.native;
  std::vector<std::string> created = place.missing;
  if (place.kind == Kind::kFree) created = {place.asWritten};
  if (place.kind == Kind::kFree) native = Posix::FolderOf(native);
  for (const std::string& name : created) {
    if (!DosPath::IsPlainFileName(name)) FailWith("look up", path, EINVAL);
    native =
        Posix::Below(native, Posix::NativeName(std::string(Lookup::WithoutTrailingDots(name))));
  }
  return native;
}
