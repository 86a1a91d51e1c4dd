#pragma once

#include <string>
#include <string_view>

class FileSystem;

/// The optional log of the status line: `kelvo.log` in the program folder, to which lines are
/// only added. A line is date, blank, time, tab, text, CR LF.
class StatusLog {
 public:
  /// `programFolder`: DOS path text.
  StatusLog(const FileSystem& files, std::string_view programFolder);

  /// False at each start, never stored.
  bool LogEnabled = false;

  /// The status line took `text`: adds a line if the log is on. Has a trap: a log that can't be
  /// written changes nothing else. The file is open within this call only.
  void StatusChanged(std::string_view text);

  /// A character was typed in the main window. The word "logswitch" switches the log on; a wrong
  /// character starts the word again and isn't taken as its first letter.
  void CharacterTyped(char character);

 private:
  const FileSystem& files_;
  std::string path_;
  std::string TypedWord_;
};
