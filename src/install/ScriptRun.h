#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class InstallSession;

/// The walk over one script's lines, with all its state. Nothing is kept from one script to the
/// next.
class ScriptRun {
 public:
  ScriptRun(InstallSession& session, std::string_view script);

  /// Whether a line opens a block.
  static bool IsHead(std::string_view line) { return CommandOf(line) != nullptr; }

  /// Walks the lines from top to bottom. Every failure is passed on.
  void Run();
  /// 1-based number of the line in hand; 0 before the first.
  [[nodiscard]] std::size_t LineNumber() const { return lineNumber_; }
  /// The line in hand as written.
  [[nodiscard]] std::string_view Line() const { return line_; }

 private:
  using Handler = void (ScriptRun::*)(std::string_view);

  /// One of the sixteen commands.
  struct Command {
    std::string_view head;
    std::int32_t firstArgIndex;
    Handler onFirstLine;    // at `ArgIndex` 0; leaves `ArgIndex` one below what it shall be next
    Handler onFurtherLine;  // at `ArgIndex` 2 and more
  };
  static const std::vector<Command>& Commands();
  static const Command* CommandOf(std::string_view head);

  void RunLine(std::string_view line);
  bool SeekLabel(std::string_view line);
  bool OpenBlock(std::string_view line);
  void Dispatch(std::string_view argument);

  // First lines of blocks.
  void HoldResolvedPath(std::string_view line);
  void HoldRawPath(std::string_view line);
  void LoadArchive(std::string_view line);
  void RebuildFirstArchive(std::string_view line);
  void OpenFirstThing(std::string_view line);
  void ChooseTest(std::string_view line);
  void SeekTarget(std::string_view line);
  void Ignore(std::string_view line);

  // Further lines, by command.
  void AddLine(std::string_view line);
  void RemoveLine(std::string_view line);
  void ReplaceLine(std::string_view line);
  void AddIMG(std::string_view line);
  void RemoveIMG(std::string_view line);
  void ReplaceIMG(std::string_view line);
  void RebuildIMG(std::string_view line);
  void Copy(std::string_view line);
  void Move(std::string_view line);
  void Delete(std::string_view line);
  void Rename(std::string_view line);
  void CreateFolder(std::string_view line);
  void RemoveFolder(std::string_view line);
  void ShellExecute(std::string_view line);
  void IfExistGoto(std::string_view line);

  // Shared steps of the commands.
  void UnpackPayload(std::string_view name);
  void DeletePayload(std::string_view name);
  std::string SourceOnDisk(std::string_view line);
  void CopyToTarget(const std::string& status, const std::string& source);
  void FallBackToTempDir(int mask);
  [[nodiscard]] std::string FirstArgName() const;
  bool RunTest(std::string_view line);
  void Open(const std::string& thing);

  InstallSession& session_;
  const std::string script_;  // a copy: the catalogue may change while events run
  const std::vector<std::string_view> lines_;
  std::size_t lineNumber_ = 0;
  std::string_view line_;

  const Command* command_ = nullptr;  // the open block's; null when no block is open
  std::int32_t ArgIndex = 0;          // how far the open block has come
  std::string FirstArg;               // the path that the command works on
  std::string RawFirstArg;            // the first argument as written, for the file commands
  std::string SecondArg;
  bool archiveUsable_ = false;  // the first line of an IMG block named an archive
  int TestKind = 0;             // of `IfExistGoto`: 1 "file", 2 "img", 3 "line", 0 anything else
  bool Seeking = false;         // a jump is pending: lines are skipped until its label
  std::string TargetLabel;      // the jump's first label
  std::string ElseLabel;        // the jump's second label
  bool TakeTarget = false;      // the jump goes to `TargetLabel`; otherwise to `ElseLabel`
  bool Unpacked = false;        // the source of the current line was unpacked into `TempDir`
};
