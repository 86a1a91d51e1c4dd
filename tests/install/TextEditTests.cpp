// Editing a text file line by line: to the byte, and with the disk failing at each step.

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "install/basTextEdit.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/WantedStop.h"
#include "support/TempFolder.h"

namespace {

using basTextEdit::EditMode;
constexpr EditMode kAdd = EditMode::kAdd;
constexpr EditMode kRemove = EditMode::kRemove;
constexpr EditMode kReplace = EditMode::kReplace;

struct Edit {
  const char* before;
  EditMode mode;
  const char* search;
  const char* newText;
  const char* after;
};

void CheckEdits(const std::vector<Edit>& edits) {
  const TempFolder folder;
  const FileSystem files;
  for (const Edit& edit : edits) {
    SCOPED_TRACE(testing::Message() << testing::PrintToString(edit.before) << " / " << edit.search
                                    << " / mode " << static_cast<int>(edit.mode));
    folder.Write("t.txt", edit.before);
    basTextEdit::ModifyLine(files, folder.Dos(), folder.Dos("t.txt"), edit.search, edit.newText,
                            edit.mode);
    EXPECT_EQ(folder.Read("t.txt"), edit.after);
  }
}

TEST(TextEdit, AddRemoveReplace) {
  CheckEdits({
      {"a\r\nb\r\n", kAdd, "a", "n", "a\r\nn\r\nb\r\n"},
      {"a\r\nb\r\na\r\nc", kAdd, "a", "n", "a\r\nn\r\nb\r\na\r\nc\r\n"},
      {"a\r\nb\r\n", kAdd, "a", "", "a\r\n\r\nb\r\n"},
      // No match, or nothing to search for: to the end, without a line end behind it.
      {"a\r\n", kAdd, "x", "n", "a\r\nn"},
      // Doubled line ends are empty lines.
      {"a\r\n\r\n\r\nb\r\n", kAdd, "b", "n", "a\r\n\r\n\r\nb\r\nn\r\n"},
      // An empty file holds one empty line from then on.
      {"", kAdd, "x", "n", "\r\nn"},
      {"", kAdd, "*", "n", "\r\nn\r\n"},
      {"a\r\nb\r\nc\r\n", kRemove, "a", "", "b\r\nc\r\n"},
      {"a\r\nb", kRemove, "b", "", "a\r\n"},
      {"a\r\n", kRemove, "a", "", ""},
      {"a\r\na\r\n", kRemove, "a", "", "a\r\n"},
      {"a\r\n\r\nb\r\n", kRemove, "[]", "", "a\r\nb\r\n"},
      // No match is a failure behind the line end's being added.
      {"a\r\nb", kRemove, "x", "", "a\r\nb\r\n"},
      {"", kRemove, "", "", "\r\n"},
      {"a\r\nb\r\nlang\r\n", kReplace, "lang", "n", "a\r\nb\r\nn\r\n"},
      {"a", kReplace, "a", "neu", "neu\r\n"},
      {"a\r\nb\r\n", kReplace, "a", "", "\r\nb\r\n"},
      {"a\r\nb", kReplace, "x", "neu", "a\r\nb\r\n"},
  });
}

TEST(TextEdit, LineEndsOfOtherSystemsAndPatterns) {
  CheckEdits({
      // A lone LF ends no line.
      {"a\nb\n", kAdd, "a", "n", "a\nb\n\r\nn"},
      {"a\nb\n", kAdd, "a\nb\n", "n", "a\nb\n\r\nn\r\n"},
      {"a\nb\r\nc\r\n", kRemove, "a*", "", "c\r\n"},
      // A lone CR ends one, and is taken for two bytes.
      {"xy\ra\rb\r\n", kAdd, "a", "n", "xy\ra\rna\rb\r\n"},
      {"xy\ra\rb\r\n", kRemove, "a", "", "xyb\r\n"},
      {"a\r", kAdd, "a", "n", "a\rna\r\r\n"},
      {"a\r\r\n", kRemove, "[]", "", "a\r"},
      // Positions that come out beyond the text are a failure.
      {"a\r", kRemove, "a", "", "a\r\r\n"},
      {"\ra\r\n", kAdd, "*", "n", "\ra\r\n"},
      // Patterns, and case.
      {"Alpha 1\r\nalpha 2\r\n", kReplace, "ALPHA*", "n", "n\r\nalpha 2\r\n"},
      {"x\r\n\xC4rger \xF6\r\n", kReplace, "\xE4RGER \xD6", "n", "x\r\nn\r\n"},
      // A line equals its own text, pattern signs and all, if the pattern is well formed.
      {"x\r\nA[b]#\r\n", kReplace, "a[B]#", "n", "x\r\nn\r\n"},
      {"x\r\na[b", kReplace, "a[b", "n", "x\r\na[b\r\n"},
      {"x", kAdd, "[", "n", "x\r\n"},
  });
}

TEST(TextEdit, LineExists) {
  const TempFolder folder;
  const FileSystem files;
  const std::string path = folder.Dos("t.txt");
  const std::string text = "eins\r\n\r\nzw[ei\rdr\nei\r\nvier";
  folder.Write("t.txt", text);
  for (const char* search : {"EINS", "", "zw?ei", "d*i", "v*", "*"})
    EXPECT_TRUE(basTextEdit::LineExists(files, path, search)) << search;
  for (const char* search : {"ein", "dr", "ei", "fuenf", "v"})
    EXPECT_FALSE(basTextEdit::LineExists(files, path, search)) << search;
  EXPECT_EQ(folder.Read("t.txt"), text);
  EXPECT_THROW(basTextEdit::LineExists(files, path, "zw[ei"), Failure);
  EXPECT_THROW(basTextEdit::LineExists(files, folder.Dos("fehlt.txt"), "x"), Failure);
  folder.Write("t.txt", "");
  EXPECT_FALSE(basTextEdit::LineExists(files, path, "*"));
}

TEST(TextEdit, AStopLeavesTheFileAsItWas) {
  const TempFolder folder;
  const FileSystem files;
  const std::string text(1 << 20, 'a');
  const std::string search = "*" + std::string(6000, 'a') + "b*";
  const std::string path = folder.Dos("t.txt");
  const auto stop = [] { throw WantedStop{2}; };
  folder.Write("t.txt", text);
  EXPECT_THROW(basTextEdit::LineExists(files, path, search, stop), WantedStop);
  for (const EditMode mode : {kAdd, kRemove, kReplace})
    EXPECT_THROW(basTextEdit::ModifyLine(files, "", path, search, "n", mode, stop), WantedStop);
  EXPECT_TRUE(folder.Read("t.txt") == text);
}

/// With the disk failing at any step, once or from then on, a file holds what stood there, that
/// with its line end, or the edited text: never a mixture.
TEST(TextEdit, AFailingDiskLeavesNoMixture) {
  const TempFolder folder;
  FileSystem files;
  const std::vector<Edit> edits = {
      {"a\r\nb", kAdd, "a", "neu", "a\r\nneu\r\nb\r\n"},
      {"a\r\nb\r\n", kReplace, "b", "lang", "a\r\nlang\r\n"},
      {"a\r\nb\r\n", kRemove, "a", "", "b\r\n"},
  };
  for (const Edit& edit : edits) {
    const std::string before = edit.before;
    std::set<std::string> whole = {before, "a\r\nb\r\n", edit.after};
    // A text that gets shorter is written into the emptied file.
    if (edit.mode == kRemove) whole.insert("");
    for (const bool once : {true, false}) {
      std::set<std::string> seen;
      int steps = 1;
      for (int n = 1; n <= steps; ++n) {
        folder.Write("t.txt", before);
        files.Faults().FailAt(n, once);
        basTextEdit::ModifyLine(files, folder.Dos(), folder.Dos("t.txt"), edit.search, edit.newText,
                                edit.mode);
        // The first run without a fault is the last.
        steps = std::max(steps, files.Faults().Count() >= n ? n + 1 : n);
        const std::string left = folder.Read("t.txt");
        EXPECT_TRUE(whole.contains(left)) << "step " << n << " leaves " << left;
        seen.insert(left);
        EXPECT_EQ(folder.List(), std::vector<std::string>{"t.txt"});
      }
      EXPECT_GT(steps, 5);
      EXPECT_EQ(seen, whole);
      files.Faults().FailAt(0);
    }
  }
}

}  // namespace
