#include "platform/FileSystem.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/Text.h"
#include "platform/posix/Place.h"
#include "platform/posix/System.h"

namespace {

using Posix::FailWith;
using Posix::Place;
using Kind = Place::Kind;

constexpr mode_t kPermissions = 07777;
constexpr mode_t kPlainPermissions = 0777;
constexpr mode_t kNewFile = 0666;
constexpr mode_t kPrivate = 0600;

// Fails unless a file can be opened or replaced at `place`, whether it exists or not.
void RequireFileOrFree(const char* operation, std::string_view path, const Place& place) {
  switch (place.kind) {
    case Kind::kNowhere:
      FailWith(operation, path, place.error);
    case Kind::kFolder:
      FailWith(operation, path, EISDIR);
    case Kind::kSpecial:
      FailWith(operation, path, EINVAL);
    case Kind::kFree:
      if (place.endsInSeparator) FailWith(operation, path, EISDIR);
      if (!DosPath::IsPlainFileName(place.asWritten)) FailWith(operation, path, EINVAL);
      return;
    case Kind::kFile:
      return;
  }
}

void RequireFile(const char* operation, std::string_view path, const Place& place) {
  if (place.kind == Kind::kFree) FailWith(operation, path, ENOENT);
  RequireFileOrFree(operation, path, place);
}

void RequireNoProtection(const char* operation, std::string_view path, const Place& place) {
  if (place.kind == Kind::kFile && Posix::IsWriteProtected(place.status))
    FailWith(operation, path, EACCES);
}

bool IsSameFile(const struct stat& left, const struct stat& right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

// The path of the file itself, behind all links.
std::string RealPathOf(const char* operation, std::string_view path, const Place& place) {
  if (place.kind != Kind::kFile) return place.native;
  std::optional<std::string> real = Posix::RealPath(place.native);
  if (!real) FailWith(operation, path, errno);
  return *std::move(real);
}

// Gives a file the owner and the permissions of the one whose place it takes, as far as the user
// and the file system can.
void TakeOver(const std::string& native, const struct stat& old) {
  struct stat now = {};
  if (stat(native.c_str(), &now) != 0) return;
  bool done = true;
  // Changing the owner may clear permissions, so it goes first.
  if (now.st_uid != old.st_uid || now.st_gid != old.st_gid)
    done = chown(native.c_str(), old.st_uid, old.st_gid) == 0;
  // Without the owner, rights that were given to the owner aren't lent to another.
  const mode_t wanted = old.st_mode & (done ? kPermissions : kPlainPermissions);
  if ((now.st_mode & kPermissions) != wanted) chmod(native.c_str(), wanted);
}

// Writes a folder's own entries to the disk. Not every file system can; then it's left to time.
void SyncFolderQuietly(const std::string& folder) {
  const int number = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (number < 0) return;
  fsync(number);
  close(number);
}

int RenameOnto(const std::string& from, const std::string& to) {
  return rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

// Renames unless the target exists.
int RenameToFree(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) return errno;
  struct stat status = {};
  return lstat(to.c_str(), &status) == 0 ? EEXIST : RenameOnto(from, to);
}

// A new file that is deleted again unless it is kept.
class HelperFile {
 public:
  explicit HelperFile(std::string native) : native_(std::move(native)) {}
  HelperFile(HelperFile&&) = delete;
  HelperFile(const HelperFile&) = delete;
  HelperFile& operator=(HelperFile&&) = delete;
  HelperFile& operator=(const HelperFile&) = delete;
  ~HelperFile() {
    if (!native_.empty()) unlink(native_.c_str());
  }
  void Keep() { native_.clear(); }

 private:
  std::string native_;
};

// A file that is written beside its place and then takes it, whole or not at all.
class Successor {
 public:
  // `place` is where the file goes; `mode` counts if nothing is there.
  Successor(const char* operation, std::string_view path, const Place& place, mode_t mode,
            std::shared_ptr<FaultPlan> faults)
      : operation_(operation),
        path_(path),
        place_(place),
        target_(RealPathOf(operation, path, place)),
        faults_(std::move(faults)),
        content_(Make(place.Exists() ? kPrivate : mode)),
        unfinished_(native_) {}

  [[nodiscard]] File& Content() { return content_; }

  void SetModificationTime(const struct timespec& time) {
    const std::array<struct timespec, 2> times = {timespec{0, UTIME_OMIT}, time};
    if (utimensat(AT_FDCWD, native_.c_str(), times.data(), 0) != 0)
      FailWith(operation_, path_, errno);
  }

  // The content must have been closed.
  void TakePlace() {
    if (place_.Exists()) TakeOver(native_, place_.status);
    faults_->Step("rename", path_);
    const int error =
        place_.Exists() ? RenameOnto(native_, target_) : RenameToFree(native_, target_);
    if (error != 0) FailWith(operation_, path_, error);
    unfinished_.Keep();
  }

  void SyncFolder() const { SyncFolderQuietly(Posix::FolderOf(target_)); }

 private:
  // Makes the file, under a name that no one else uses, hidden so that no script sees it.
  File Make(mode_t mode) {
    constexpr int kMostTries = 1000;
    faults_->Step("create", path_);
    for (int i = 0; i < kMostTries; ++i) {
      native_ = Posix::Below(Posix::FolderOf(target_), Concat(".kelvo-", getpid(), "-", i, ".tmp"));
      Posix::Descriptor file = Posix::OpenOrdinary(native_, O_RDWR | O_CREAT | O_EXCL, mode);
      if (file.IsOpen()) return {file.Release(), path_, faults_};
      if (errno != EEXIST) break;
    }
    FailWith(operation_, path_, errno);
  }

  const char* operation_;
  std::string path_;
  const Place& place_;
  std::string target_;
  std::shared_ptr<FaultPlan> faults_;
  std::string native_;
  File content_;
  HelperFile unfinished_;
};

// Opens the file at `place`, with `create` among the flags of `open` if nothing is there yet.
File OpenAt(const char* operation, std::string_view path, const Place& place, int flags,
            const std::shared_ptr<FaultPlan>& faults) {
  faults->Step(operation, path);
  // What was free a moment ago must still be: no link that came up since is written through.
  const int creating = place.kind == Kind::kFree ? O_CREAT | O_EXCL : 0;
  Posix::Descriptor file = Posix::OpenOrdinary(place.native, flags | creating, kNewFile);
  if (!file.IsOpen()) FailWith(operation, path, errno);
  return {file.Release(), std::string(path), faults};
}

void RequireChanges(const FileSystemOptions& options, const char* operation,
                    std::string_view path) {
  if (options.readOnly) FailWith(operation, path, EROFS);
}

// Whether a file that can be read and yet not written is opened for reading alone.
bool AllowsReadingAlone(int error) {
  constexpr std::array<int, 4> kErrors = {EACCES, EPERM, EROFS, ETXTBSY};
  return std::find(kErrors.begin(), kErrors.end(), error) != kErrors.end();
}

// Opens an existing file for reading and writing, or else for reading alone.
File OpenAsAllowed(std::string_view path, const Place& place,
                   const std::shared_ptr<FaultPlan>& faults) {
  faults->Step("open", path);
  Posix::Descriptor file = Posix::OpenOrdinary(place.native, O_RDWR);
  if (!file.IsOpen() && AllowsReadingAlone(errno))
    file = Posix::OpenOrdinary(place.native, O_RDONLY);
  if (!file.IsOpen()) FailWith("open", path, errno);
  return {file.Release(), std::string(path), faults};
}

bool FitsMask(std::string_view name, Kind kind, int mask) {
  if (name.starts_with('.') && (mask & kFindHidden) == 0) return false;
  switch (kind) {
    case Kind::kFile:
      return true;
    case Kind::kFolder:
      return (mask & kFindFolders) != 0;
    case Kind::kSpecial:
      return (mask & kFindSystem) != 0;
    case Kind::kNowhere:
    case Kind::kFree:
      break;
  }
  return false;
}

// The parts of a path up to its last component, and that component.
std::pair<Posix::DosPathParts, std::string> SplitLast(Posix::DosPathParts parts) {
  std::string last;
  if (!parts.names.empty()) {
    last = std::move(parts.names.back());
    parts.names.pop_back();
  }
  parts.endsInSeparator = false;
  return {std::move(parts), std::move(last)};
}

std::vector<std::string> FindInFolder(const Place& folder, std::string_view pattern, int mask) {
  std::vector<std::string> names;
  if (folder.kind != Kind::kFolder) return names;
  int ignored = 0;  // what can't be looked at isn't found
  for (Posix::FolderEntry& entry : Posix::MatchingEntries(folder.native, pattern, ignored))
    if (FitsMask(entry.name, entry.kind, mask)) names.push_back(std::move(entry.name));
  return names;
}

bool EndsInPattern(const Posix::DosPathParts& parts) {
  return parts.valid && !parts.endsInSeparator && !parts.names.empty() &&
         DosPath::HasWildcards(parts.names.back());
}

// Deletes one name of an ordinary file.
void DeleteFile(FaultPlan& faults, std::string_view path, const std::string& native) {
  faults.Step("delete", path);
  if (unlink(native.c_str()) != 0) FailWith("delete", path, errno);
}

void DeleteMatches(const Posix::WinePrefix& prefix, const Posix::DosPathParts& parts,
                   FaultPlan& faults, std::string_view path) {
  const auto [folderParts, pattern] = SplitLast(parts);
  const Place folder = Posix::FindPlace(prefix, folderParts);
  if (folder.kind == Kind::kNowhere) FailWith("delete", path, folder.error);
  bool any = false;
  int error = 0;
  const auto entries = Posix::MatchingEntries(folder.native, pattern, error);
  if (error != 0) FailWith("delete", path, error);
  for (const Posix::FolderEntry& entry : entries) {
    if (!FitsMask(entry.name, entry.kind, kFindFiles)) continue;
    any = true;
    const std::string native = Posix::Below(folder.native, entry.native);
    struct stat status = {};
    if (stat(native.c_str(), &status) != 0) FailWith("delete", path, errno);
    if (Posix::IsWriteProtected(status)) FailWith("delete", path, EACCES);
    DeleteFile(faults, path, native);
  }
  if (!any) FailWith("delete", path, ENOENT);
}

// Whether two places are one entry of a folder, perhaps written with other case.
bool IsSameEntry(const Place& left, const Place& right) {
  if (left.native == right.native) return true;
  // A file system that doesn't mind case finds either name; a second link of a file is no such
  // thing.
  struct stat leftStatus = {};
  struct stat rightStatus = {};
  const bool exist = lstat(left.native.c_str(), &leftStatus) == 0 &&
                     lstat(right.native.c_str(), &rightStatus) == 0;
  return exist && IsSameFile(leftStatus, rightStatus) &&
         (leftStatus.st_nlink == 1 || S_ISDIR(leftStatus.st_mode)) &&
         Text::EqualsIgnoringCase(left.name, right.name);
}

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

FileSystem::FileSystem(FileSystemOptions options)
    : options_(std::move(options)), faults_(std::make_shared<FaultPlan>()) {}

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
  const Place place = Posix::FindPlace(options_.winePrefix, path);
  if (place.kind == Kind::kNowhere && place.missing.empty()) FailWith("look up", path, place.error);
  std::string native = place.native;
  std::vector<std::string> created = place.missing;
  if (place.kind == Kind::kFree) created = {place.asWritten};
  if (place.kind == Kind::kFree) native = Posix::FolderOf(native);
  for (const std::string& name : created) {
    if (!DosPath::IsPlainFileName(name)) FailWith("look up", path, EINVAL);
    native = Posix::Below(native, Text::ToUtf8(Posix::WithoutTrailingDots(name)));
  }
  return native;
}

std::string FileSystem::FindFirst(std::string_view path, int mask) const {
  std::vector<std::string> names = FindAll(path, mask);
  return names.empty() ? std::string() : std::move(names.front());
}

std::vector<std::string> FileSystem::FindAll(std::string_view path, int mask) const {
  const Posix::DosPathParts parts = Posix::ParseDosPath(path);
  if (!parts.valid) return {};
  const bool wantsFolders = (mask & kFindFolders) != 0;
  if (parts.endsInSeparator) {
    const Place folder = Posix::FindPlace(options_.winePrefix, parts);
    std::vector<std::string> names;
    if (folder.kind == Kind::kFolder && wantsFolders) names.emplace_back(".");
    std::vector<std::string> others = FindInFolder(folder, "*.*", mask);
    std::move(others.begin(), others.end(), std::back_inserter(names));
    return names;
  }
  if (EndsInPattern(parts)) {
    const auto [folderParts, pattern] = SplitLast(parts);
    return FindInFolder(Posix::FindPlace(options_.winePrefix, folderParts), pattern, mask);
  }
  const Place place = Posix::FindPlace(options_.winePrefix, parts);
  // A drive's root and the current directory have no name of their own.
  if (place.name.empty() && place.kind == Kind::kFolder)
    return wantsFolders ? std::vector<std::string>{"."} : std::vector<std::string>{};
  if (!FitsMask(place.name, place.kind, mask)) return {};
  return {place.name};
}

File FileSystem::OpenForReading(std::string_view path) const {
  const Place place = Posix::FindPlace(options_.winePrefix, path);
  RequireFile("open", path, place);
  return OpenAt("open", path, place, O_RDONLY, faults_);
}

File FileSystem::OpenBinary(std::string_view path) const {
  const Place place = Posix::FindPlace(options_.winePrefix, path);
  RequireFileOrFree("open", path, place);
  if (place.kind == Kind::kFree) {
    RequireChanges(options_, "create", path);
    return OpenAt("create", path, place, O_RDWR, faults_);
  }
  if (options_.readOnly || Posix::IsWriteProtected(place.status))
    return OpenAt("open", path, place, O_RDONLY, faults_);
  return OpenAsAllowed(path, place, faults_);
}

File FileSystem::Create(std::string_view path) const {
  constexpr const char* kOperation = "create";
  RequireChanges(options_, kOperation, path);
  const Place place = Posix::FindPlace(options_.winePrefix, path);
  RequireFileOrFree(kOperation, path, place);
  RequireNoProtection(kOperation, path, place);
  return OpenAt(kOperation, path, place, O_RDWR | O_TRUNC, faults_);
}

void FileSystem::WriteWhole(std::string_view path,
                            const std::vector<std::string_view>& parts) const {
  constexpr const char* kOperation = "write";
  RequireChanges(options_, kOperation, path);
  const Place place = Posix::FindPlace(options_.winePrefix, path);
  RequireFileOrFree(kOperation, path, place);
  RequireNoProtection(kOperation, path, place);
  const bool isNew = place.kind == Kind::kFree;
  File file = OpenAt(isNew ? "create" : "open", path, place, O_RDWR, faults_);
  // A new file that can't be filled isn't left behind.
  HelperFile unfinished(isNew ? place.native : std::string());
  std::int64_t size = 0;
  for (const std::string_view part : parts) size += static_cast<std::int64_t>(part.size());
  // The write is one step, so that a step that fails leaves the old text or none, but no mixture.
  const std::int64_t former = file.Size();
  if (former < size) file.Reserve(former, size - former);
  if (former > size) file.SetSize(0);
  file.WriteAt(0, parts);
  file.Close();
  unfinished.Keep();
}

void FileSystem::ReplaceWhole(std::string_view path, std::string_view text) const {
  constexpr const char* kOperation = "replace";
  RequireChanges(options_, kOperation, path);
  const Place place = Posix::FindPlace(options_.winePrefix, path);
  RequireFileOrFree(kOperation, path, place);
  RequireNoProtection(kOperation, path, place);
  Successor successor(kOperation, path, place, kNewFile, faults_);
  successor.Content().WriteAt(0, text);
  successor.Content().Sync();
  successor.Content().Close();
  successor.TakePlace();
  successor.SyncFolder();
}

void FileSystem::Copy(std::string_view from, std::string_view to) const {
  constexpr const char* kOperation = "copy to";
  RequireChanges(options_, kOperation, to);
  const Place source = Posix::FindPlace(options_.winePrefix, from);
  RequireFile("copy", from, source);
  const Place target = Posix::FindPlace(options_.winePrefix, to);
  RequireFileOrFree(kOperation, to, target);
  RequireNoProtection(kOperation, to, target);
  if (target.Exists() && IsSameFile(source.status, target.status))
    Fail("copy \"", from, "\": it can't be copied onto itself");

  File content = OpenAt("open", from, source, O_RDONLY, faults_);
  const mode_t mode = source.status.st_mode & kPlainPermissions;
  Successor successor(kOperation, to, target, mode, faults_);
  successor.Content().CopyFrom(content, 0, content.Size(), 0);
  successor.Content().Close();
  successor.SetModificationTime(source.status.st_mtim);
  successor.TakePlace();
}

void FileSystem::Delete(std::string_view path) const {
  constexpr const char* kOperation = "delete";
  RequireChanges(options_, kOperation, path);
  const Posix::DosPathParts parts = Posix::ParseDosPath(path);
  if (EndsInPattern(parts)) return DeleteMatches(options_.winePrefix, parts, *faults_, path);
  const Place place = Posix::FindPlace(options_.winePrefix, parts);
  RequireFile(kOperation, path, place);
  RequireNoProtection(kOperation, path, place);
  DeleteFile(*faults_, path, place.native);
}

void FileSystem::Rename(std::string_view from, std::string_view to) const {
  constexpr const char* kOperation = "rename";
  RequireChanges(options_, kOperation, from);
  const Place source = Posix::FindPlace(options_.winePrefix, from);
  if (source.kind == Kind::kNowhere) FailWith(kOperation, from, source.error);
  if (source.kind == Kind::kFree || source.name.empty()) FailWith(kOperation, from, ENOENT);
  if (source.kind == Kind::kSpecial) FailWith(kOperation, from, EINVAL);
  const Place target = Posix::FindPlace(options_.winePrefix, to);
  if (target.kind == Kind::kNowhere) FailWith("rename to", to, target.error);
  const bool otherCase =
      target.Exists() && IsSameEntry(source, target) && target.asWritten != source.name;
  if (target.Exists() && !otherCase) FailWith("rename to", to, EEXIST);
  if (!DosPath::IsPlainFileName(target.asWritten)) FailWith("rename to", to, EINVAL);

  faults_->Step(kOperation, from);
  const std::string renamed =
      Posix::Below(Posix::FolderOf(target.native), Text::ToUtf8(target.asWritten));
  // Where the file system itself doesn't mind case, the new name exists already: as this entry.
  const bool replaces = otherCase && source.native != target.native;
  const int error =
      replaces ? RenameOnto(source.native, renamed) : RenameToFree(source.native, renamed);
  if (error != 0) FailWith(kOperation, from, error);
}

void FileSystem::PutInPlace(std::string_view replacement, std::string_view path) const {
  constexpr const char* kOperation = "replace";
  RequireChanges(options_, kOperation, path);
  const Place source = Posix::FindPlace(options_.winePrefix, replacement);
  RequireFile(kOperation, replacement, source);
  const Place target = Posix::FindPlace(options_.winePrefix, path);
  RequireFile(kOperation, path, target);
  RequireNoProtection(kOperation, path, target);
  if (IsSameFile(source.status, target.status))
    Fail("replace \"", path, "\": it can't take its own place");

  faults_->Step("rename", path);
  const std::string real = RealPathOf(kOperation, path, target);
  TakeOver(source.native, target.status);
  const int error = RenameOnto(source.native, real);
  if (error == EXDEV) {
    // The path is a link to another file system: the content goes there, whole or not at all.
    Copy(replacement, path);
    return Delete(replacement);
  }
  if (error != 0) FailWith(kOperation, path, error);
  SyncFolderQuietly(Posix::FolderOf(real));
  const std::string sourceFolder = Posix::FolderOf(source.native);
  if (sourceFolder != Posix::FolderOf(real)) SyncFolderQuietly(sourceFolder);
}

void FileSystem::CreateFolder(std::string_view path) const {
  constexpr const char* kOperation = "create folder";
  constexpr mode_t kNewFolder = 0777;
  RequireChanges(options_, kOperation, path);
  const Place place = Posix::FindPlace(options_.winePrefix, path);
  if (place.kind == Kind::kNowhere) FailWith(kOperation, path, place.error);
  if (place.Exists()) FailWith(kOperation, path, EEXIST);
  if (!DosPath::IsPlainFileName(place.asWritten)) FailWith(kOperation, path, EINVAL);
  faults_->Step(kOperation, path);
  if (mkdir(place.native.c_str(), kNewFolder) != 0) FailWith(kOperation, path, errno);
}

void FileSystem::RemoveFolder(std::string_view path) const {
  constexpr const char* kOperation = "remove folder";
  RequireChanges(options_, kOperation, path);
  const Place place = Posix::FindPlace(options_.winePrefix, path);
  if (place.kind == Kind::kNowhere) FailWith(kOperation, path, place.error);
  if (place.kind == Kind::kFree) FailWith(kOperation, path, ENOENT);
  if (place.kind != Kind::kFolder) FailWith(kOperation, path, ENOTDIR);
  faults_->Step(kOperation, path);
  if (rmdir(place.native.c_str()) != 0) FailWith(kOperation, path, errno);
}
