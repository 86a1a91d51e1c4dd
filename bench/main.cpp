// The benchmark table: the engine's heavy work, each measured against a plain way of doing as
// much in the same run, as a ratio. A bare time would say more of the machine than of the engine.

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include "Measure.h"
#include "PlainFile.h"
#include "Row.h"
#include "platform/Failure.h"
#include "platform/Text.h"

namespace {

constexpr const char* kUsage =
    "Usage: kelvo_bench [--rounds N] [--row NAME]... [--dir DIR] [--verbose]\n"
    "\n"
    "  --rounds N   measured rounds of each row, 5 if not given\n"
    "  --row NAME   only this row: rebuild, add, replace, decompress, open, open-many, add-line\n"
    "  --dir DIR    where a temp folder of about 4 GiB is made and removed again\n"
    "  --verbose    the times of each round, on stderr\n"
    "\n"
    "Exit status 1 if a row is over its limit, 2 if the benchmark itself failed.\n";

struct Options {
  int rounds = 5;
  bool verbose = false;
  std::vector<std::string> rows;
  std::filesystem::path folder;
};

/// A folder of its own, removed with all that is in it.
class OwnFolder {
 public:
  explicit OwnFolder(const std::filesystem::path& parent) {
    std::string path = (parent / "kelvo_bench.XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) Fail("no folder can be made in ", parent.string());
    path_ = path;
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;
  OwnFolder(OwnFolder&&) = delete;
  OwnFolder& operator=(OwnFolder&&) = delete;
  ~OwnFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

struct Result {
  Row::Title about;
  double ratio;
  std::int64_t memory;
  std::int64_t memoryLimit;

  [[nodiscard]] bool IsSlow() const { return ratio > about.limit; }
  [[nodiscard]] bool IsLarge() const { return memory > memoryLimit; }
};

Seconds TimeOfYardstick(Row& row, const std::filesystem::path& folder) {
  row.BeforeYardstick();
  SettleMachine(folder);
  return SecondsOf([&] { row.RunYardstick(); });
}

Seconds TimeOfWork(Row& row, const std::filesystem::path& folder) {
  row.BeforeWork();
  SettleMachine(folder);
  const Seconds seconds = SecondsOf([&] { row.RunWork(); });
  row.CheckWork();
  return seconds;
}

void PrintRound(const std::string& row, const Seconds& yardstick, const Seconds& work) {
  std::cerr << std::fixed << std::setprecision(3) << row << ": " << work.passed << " s / "
            << yardstick.passed << " s = " << work.passed / yardstick.passed << "; of processors "
            << work.worked << " s / " << yardstick.worked
            << " s = " << work.worked / yardstick.worked << '\n';
}

Result Measure(const RowMaker& maker, const Options& options) {
  const OwnFolder folder(options.folder);
  const std::unique_ptr<Row> row = maker.make(folder.Path());
  row->BeforeWork();
  const std::int64_t memory = PeakMemoryOf([&] { row->RunWork(); });
  TimeOfYardstick(*row, folder.Path());
  TimeOfWork(*row, folder.Path());
  std::vector<double> ratios;
  for (int round = 0; round < options.rounds; ++round) {
    const Seconds yardstick = TimeOfYardstick(*row, folder.Path());
    const Seconds work = TimeOfWork(*row, folder.Path());
    ratios.push_back(work.passed / yardstick.passed);
    if (options.verbose) PrintRound(maker.name, yardstick, work);
  }
  return {row->About(), Median(ratios), memory, row->MemoryLimit()};
}

constexpr int kWorkWidth = 66;
constexpr int kYardstickWidth = 58;

void PrintHead() {
  std::cout << std::left << std::setw(kWorkWidth) << "Row" << std::setw(kYardstickWidth)
            << "Yardstick" << std::right << std::setw(7) << "ratio" << std::setw(7) << "limit"
            << "       " << std::setw(8) << "MiB" << std::setw(7) << "limit" << '\n';
}

void PrintRow(const Result& result) {
  const auto mebibytes = [](std::int64_t bytes) {
    return static_cast<double>(bytes) / static_cast<double>(kMiB);
  };
  std::cout << std::fixed << std::left << std::setw(kWorkWidth) << result.about.work
            << std::setw(kYardstickWidth) << result.about.yardstick << std::right
            << std::setprecision(2) << std::setw(7) << result.ratio << std::setw(7)
            << result.about.limit << (result.IsSlow() ? "  over " : "  ok   ")
            << std::setprecision(1) << std::setw(8) << mebibytes(result.memory) << std::setw(7)
            << mebibytes(result.memoryLimit) << (result.IsLarge() ? "  over" : "  ok") << '\n'
            << std::flush;
}

int Rounds(const std::string& text) {
  const auto rounds = Text::WholeNumber(text);
  if (!rounds || *rounds < 1) Fail("--rounds: \"", text, "\" is no number of rounds");
  return *rounds;
}

Options ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const auto value = [&] {
      if (i + 1 == arguments.size()) Fail(arguments[i], " needs a value");
      return arguments[++i];
    };
    if (arguments[i] == "--rounds") {
      options.rounds = Rounds(value());
    } else if (arguments[i] == "--row") {
      options.rows.push_back(value());
    } else if (arguments[i] == "--dir") {
      options.folder = value();
    } else if (arguments[i] == "--verbose") {
      options.verbose = true;
    } else {
      Fail("there is no option ", arguments[i], "\n", kUsage);
    }
  }
  // Beside the program, which is on the disk that the build uses; /tmp may be memory.
  if (options.folder.empty()) {
    options.folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  }
  return options;
}

bool IsWanted(const RowMaker& row, const Options& options) {
  return options.rows.empty() ||
         std::find(options.rows.begin(), options.rows.end(), row.name) != options.rows.end();
}

int Run(const std::vector<std::string>& arguments) {
  if (!arguments.empty() && arguments.front() == "--help") {
    std::cout << kUsage;
    return 0;
  }
  const Options options = ParseOptions(arguments);
  for (const std::string& name : options.rows) {
    const auto hasName = [&](const RowMaker& row) { return row.name == name; };
    if (std::none_of(AllRows().begin(), AllRows().end(), hasName)) {
      Fail("there is no row ", name, "\n", kUsage);
    }
  }
  PrintHead();
  bool isOver = false;
  for (const RowMaker& row : AllRows()) {
    if (!IsWanted(row, options)) continue;
    const Result result = Measure(row, options);
    PrintRow(result);
    isOver = isOver || result.IsSlow() || result.IsLarge();
  }
  return isOver ? 1 : 0;
}

}  // namespace

const std::vector<RowMaker>& AllRows() {
  static const std::vector<RowMaker> rows = {
      {"rebuild", MakeRebuildRow},       {"add", MakeAddRow},   {"replace", MakeReplaceRow},
      {"decompress", MakeDecompressRow}, {"open", MakeOpenRow}, {"open-many", MakeOpenManyRow},
      {"add-line", MakeAddLineRow},
  };
  return rows;
}

int main(int count, char** arguments) {
  try {
    return Run({arguments + 1, arguments + count});
  } catch (const std::exception& failure) {
    std::cerr << "kelvo_bench: " << failure.what() << '\n';
    return 2;
  }
}
