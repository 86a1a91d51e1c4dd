#include "core/StatusLog.h"

#include <ctime>

#include "core/basDebugLog.h"
#include "platform/Clock.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace {

constexpr std::string_view kSwitchWord = "logswitch";

}  // namespace

StatusLog::StatusLog(const FileSystem& files, std::string_view programFolder)
    : files_(files), path_(DosPath::Join(programFolder, "kelvo.log")) {}

void StatusLog::StatusChanged(std::string_view text) {
  if (!LogEnabled) return;
  Trapped("frmMain.lblStatus_Change", [&] {
    const std::time_t now = std::time(nullptr);
    const std::string line =
        Clock::ShortDate(now) + " " + Clock::TimeOfDay(now) + "\t" + std::string(text) + "\r\n";
    File log = files_.OpenBinary(path_);
    log.WriteAt(log.Size(), line);
    log.Close();
  });
}

void StatusLog::CharacterTyped(char character) {
  TypedWord_ += character;
  if (!kSwitchWord.starts_with(Text::LowerCase(TypedWord_))) TypedWord_.clear();
  // The word stays after a success, so that the next character, whatever it is, clears it.
  if (TypedWord_ == kSwitchWord) LogEnabled = true;
}
