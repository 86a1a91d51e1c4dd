#include "install/PackCheck.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "core/basDebugLog.h"
#include "install/InstallRun.h"
#include "install/InstallSession.h"
#include "install/ScriptWalk.h"
#include "pack/PayloadCheck.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"

namespace {

using Content = ArgumentRole::Content;
using Kind = PackFinding::Kind;

/// A line that writes to a folder, a text file or an archive.
struct Work {
  Content content;       // what its argument is; kArchive for a rebuild, kNothing for other targets
  std::string path;      // of what is written to, resolved
  std::string argument;  // of the line
  bool isPayload;        // the argument names a payload, and no file on disk
  std::int64_t length;   // of the file on disk
};

using PayloadLengths = std::map<std::string, PayloadLength>;

/// What the scripts will write, in their order.
class Works {
 public:
  explicit Works(InstallSession& session) : session_(session) {
    for (const ScriptToRun& script : ScriptsToRun(session.Pack)) {
      ForEachArgument(script.text, [&](const ScriptStep& step, std::size_t /*line*/) {
        Take(step);
        session_.Host.DoEvents();
      });
    }
  }
  [[nodiscard]] const std::vector<Work>& All() const { return works_; }

 private:
  void Take(const ScriptStep& step) {
    const bool writes =
        step.command != nullptr && step.command->first.effect == ArgumentRole::Effect::kWrites;
    if (!writes) return;
    if (step.index == 0) target_ = session_.ResolvePath(step.argument);
    Work work{step.role.content, target_, std::string(step.argument), false, 0};
    const bool isRebuild = step.command->further.content == Content::kArchive;
    if (step.index == 0 && !isRebuild) work.content = Content::kNothing;
    if (isRebuild) work.path = session_.ResolvePath(step.argument);
    if (work.content == Content::kPayload) work.isPayload = true;
    if (work.content == Content::kSource) LookOnDisk(work);
    // Nobody reaches for a server before the user has been asked.
    if (!DosPath::IsNetworkPath(work.path)) works_.push_back(std::move(work));
  }
  void LookOnDisk(Work& work) {
    if (DosPath::IsNetworkPath(work.argument)) return;
    const auto known = lengths_.try_emplace(work.argument);
    std::optional<std::int64_t>& length = known.first->second;
    if (known.second && !session_.Files.FindFirst(work.argument, kFindHidden).empty()) {
      length = 0;
      basDebugLog::Caught([&] { length = session_.Files.OpenForReading(work.argument).Size(); });
    }
    work.length = length.value_or(0);
    work.isPayload = !length && DosPath::IsPlainFileName(work.argument);
  }

  InstallSession& session_;
  std::vector<Work> works_;
  std::string target_;                                          // of the open block
  std::map<std::string, std::optional<std::int64_t>> lengths_;  // of sources on disk
};

std::set<std::string> PayloadNames(const std::vector<Work>& works) {
  std::set<std::string> names;
  for (const Work& work : works) {
    if (work.isPayload) names.insert(work.argument);
  }
  return names;
}

/// How much room the run takes on each disk, at its worst moment.
class RoomPlan {
 public:
  explicit RoomPlan(const FileSystem& files) : files_(files) {}

  /// Bytes at `path` for a moment, beside all that has been taken for good.
  void TakeForAMoment(const std::string& path, std::int64_t bytes) {
    Disk& disk = DiskOf(path);
    disk.moment += bytes;
    disk.peak = std::max(disk.peak, disk.taken + disk.moment);
  }
  void Take(const std::string& path, std::int64_t bytes) {
    Disk& disk = DiskOf(path);
    disk.taken += bytes;
    disk.peak = std::max(disk.peak, disk.taken + disk.moment);
  }
  void EndMoment() {
    for (auto& [volume, disk] : disks_) disk.moment = 0;
  }
  /// The length of a file as the run will have left it.
  std::int64_t& LengthOf(const std::string& path) {
    const auto known = lengths_.emplace(path, 0);
    std::int64_t& length = known.first->second;
    if (known.second && !files_.FindFirst(path, kFindHidden | kFindSystem).empty()) {
      basDebugLog::Caught([&] { length = files_.OpenForReading(path).Size(); });
    }
    return length;
  }
  void AddFindings(std::vector<PackFinding>& findings) const {
    for (const auto& [volume, disk] : disks_) {
      if (disk.peak <= disk.free) continue;
      findings.push_back({Kind::kNoRoom, disk.path,
                          Concat(disk.peak, " bytes are needed, ", disk.free, " are free")});
    }
  }

 private:
  struct Disk {
    std::string path;  // one on it
    std::int64_t free = 0;
    std::int64_t taken = 0;
    std::int64_t moment = 0;
    std::int64_t peak = 0;
  };

  /// A disk that can't be measured is taken to be large enough.
  [[nodiscard]] Room RoomAt(const std::string& path) const {
    try {
      return files_.RoomAt(path);
    } catch (const Failure&) {
      return {0, std::numeric_limits<std::int64_t>::max()};
    }
  }
  Disk& DiskOf(const std::string& path) {
    const Room room = RoomAt(path);
    return disks_.try_emplace(room.volume, Disk{path, room.free, 0, 0, 0}).first->second;
  }

  const FileSystem& files_;
  std::map<std::uint64_t, Disk> disks_;
  std::map<std::string, std::int64_t> lengths_;
};

/// The room for a file that takes the place of another, which stays until the new one is whole.
void TakeForFile(RoomPlan& plan, const std::string& target, std::int64_t length) {
  std::int64_t& former = plan.LengthOf(target);
  plan.Take(target, length);
  plan.Take(target, -std::exchange(former, length));
}

void PlanRoom(RoomPlan& plan, const InstallSession& session, const Work& work,
              const PayloadLengths& lengths) {
  const auto payload = work.isPayload ? lengths.find(work.argument) : lengths.end();
  if (work.isPayload && payload == lengths.end()) return;
  const std::int64_t length = work.isPayload ? payload->second.unpacked : work.length;
  if (work.isPayload) plan.TakeForAMoment(session.TempDir, payload->second.packed + length);
  switch (work.content) {
    case Content::kSource:
      TakeForFile(plan, DosPath::Join(work.path, work.argument), length);
      break;
    case Content::kPayload:
      plan.LengthOf(work.path) += length;
      plan.Take(work.path, length);
      break;
    case Content::kArchive:
      plan.TakeForAMoment(work.path, plan.LengthOf(work.path));
      break;
    default:
      break;
  }
  plan.EndMoment();
}

bool Has(const clsIMGtool& pack, const std::string& name) {
  return std::any_of(pack.Entries().begin(), pack.Entries().end(),
                     [&](const udtIMGEntry& entry) { return entry.Name == name; });
}

void LookAtRights(const FileSystem& files, const std::string& path, std::set<std::string>& known,
                  std::vector<PackFinding>& findings) {
  if (!known.insert(path).second) return;
  if (files.FindFirst(path, kFindHidden | kFindSystem | kFindFolders).empty()) return;
  if (files.MayWrite(path)) return;
  const bool isFile = !files.FindFirst(path, kFindHidden | kFindSystem).empty();
  findings.push_back({isFile ? Kind::kProtected : Kind::kNotWritten, path, "it can't be written"});
}

}  // namespace

std::vector<PackFinding> CheckPack(
    InstallSession& session,
    const std::function<void(std::size_t done, std::size_t count)>& progress) {
  std::vector<PackFinding> findings;
  const Works works(session);
  const std::set<std::string> names = PayloadNames(works.All());
  PayloadLengths lengths;
  std::size_t done = 0;
  progress(done, names.size());
  for (const std::string& name : names) {
    if (!Has(session.ModPackIMG, name)) {
      findings.push_back({Kind::kMissing, name, "the pack doesn't have it"});
    } else if (const auto damage = basDebugLog::Caught([&] {
                 lengths[name] = CheckPayload(session.Files, session.ModPackIMG, name,
                                              [&] { session.Host.DoEvents(); });
               })) {
      findings.push_back({Kind::kDamaged, name, *damage});
    }
    progress(++done, names.size());
  }
  RoomPlan plan(session.Files);
  std::set<std::string> known;
  for (const Work& work : works.All()) {
    PlanRoom(plan, session, work, lengths);
    LookAtRights(session.Files, work.path, known, findings);
    session.Host.DoEvents();
  }
  plan.AddFindings(findings);
  return findings;
}
