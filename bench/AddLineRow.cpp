// Adding many lines to a text file.

#include <algorithm>
#include <string>

#include "Engine.h"
#include "PlainFile.h"
#include "Row.h"
#include "TestBytes.h"
#include "platform/Failure.h"

namespace {

constexpr std::size_t kLines = 5000;
constexpr std::size_t kTexts = 2000;
constexpr std::size_t kLineLength = 39;  // without CR LF: 200 KiB in all

std::string Line(SeededNumbers& numbers, std::size_t index) {
  std::string line = std::to_string(index) + ", veh" + std::to_string(numbers.Below(900) + 100);
  while (line.size() < kLineLength) line += ", " + std::to_string(numbers.Below(1000));
  line.resize(kLineLength - 1);
  return line + ';';  // blanks at a line's end would be lost in the script
}

/// One block whose first anchor is in the middle of the file, where an anchor is on average;
/// against as many times reading and writing the file as it was at first, in place. (Emptying it
/// ahead of each write would make the yardstick slower: some file systems then hurry its data to
/// the disk.) Neither side syncs.
class AddLineRow : public Row {
 public:
  explicit AddLineRow(const std::filesystem::path& folder)
      : Row({"add-line", "AddLine, 2,000 texts in one block into 200 KiB of 5,000 lines",
             "2,000 times read and write of that file", 4}),
        engine_(folder),
        file_(folder / "object.dat") {
    SeededNumbers numbers(5);
    for (std::size_t i = 0; i < kLines; ++i) text_ += Line(numbers, i) + "\r\n";
    script_ = "AddLine {\r\nobject.dat\r\n" + std::to_string(kLines / 2) + ", veh*\r\n";
    for (std::size_t i = 0; i < kTexts; ++i) {
      added_ += Line(numbers, kLines + i) + "\r\n";
    }
    script_ += added_ + "}\r\n";
  }

  [[nodiscard]] std::int64_t MemoryLimit() const override {
    return 64 * kMiB + static_cast<std::int64_t>(text_.size() + added_.size());
  }
  void BeforeYardstick() override { WritePlain(file_, text_); }
  void RunYardstick() override {
    for (std::size_t i = 0; i < kTexts; ++i) {
      const std::string text = ReadPlain(file_);
      PlainFile(file_, PlainFile::Mode::kReadWrite).Write(text);
    }
  }
  void BeforeWork() override { WritePlain(file_, text_); }
  void RunWork() override { engine_.RunScript(script_); }
  void CheckWork() override {
    std::string expected = text_;
    expected.insert((kLines / 2 + 1) * (kLineLength + 2), added_);
    if (ReadPlain(file_) != expected) Fail("the file didn't get its lines");
  }

 private:
  Engine engine_;
  std::filesystem::path file_;
  std::string text_;
  std::string added_;
  std::string script_;
};

}  // namespace

std::unique_ptr<Row> MakeAddLineRow(const std::filesystem::path& folder) {
  return std::make_unique<AddLineRow>(folder);
}
