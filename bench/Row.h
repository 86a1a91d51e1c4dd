#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

inline constexpr std::int64_t kMiB = std::int64_t{1} << 20;

/// One row of the table: a piece of the engine's work, and a plain way of doing as much.
class Row {
 public:
  /// What the table says of it.
  struct Title {
    std::string name;       // for --row
    std::string work;       // what the engine does
    std::string yardstick;  // what it is measured against
    double limit;           // largest ratio of the two times
  };

  explicit Row(Title title) : title_(std::move(title)) {}
  Row(const Row&) = delete;
  Row& operator=(const Row&) = delete;
  Row(Row&&) = delete;
  Row& operator=(Row&&) = delete;
  virtual ~Row() = default;

  [[nodiscard]] const Title& About() const { return title_; }
  /// The most memory that the work may take above what the process has anyhow, in bytes.
  [[nodiscard]] virtual std::int64_t MemoryLimit() const = 0;

  /// Brings the disk into the state that one run needs. Not measured.
  virtual void BeforeYardstick() {}
  virtual void BeforeWork() {}
  virtual void RunYardstick() = 0;
  virtual void RunWork() = 0;
  /// Fails unless the work was done: a failure is quick, and would make a fine number.
  virtual void CheckWork() = 0;

 private:
  Title title_;
};

/// A row of the table before its data are made.
struct RowMaker {
  std::string name;
  std::unique_ptr<Row> (*make)(const std::filesystem::path& folder);
};

/// All rows in the order of the table. Each makes its data below a folder that must be empty.
const std::vector<RowMaker>& AllRows();

// The makers.
std::unique_ptr<Row> MakeRebuildRow(const std::filesystem::path& folder);
std::unique_ptr<Row> MakeAddRow(const std::filesystem::path& folder);
std::unique_ptr<Row> MakeReplaceRow(const std::filesystem::path& folder);
std::unique_ptr<Row> MakeDecompressRow(const std::filesystem::path& folder);
std::unique_ptr<Row> MakeOpenRow(const std::filesystem::path& folder);
std::unique_ptr<Row> MakeOpenManyRow(const std::filesystem::path& folder);
std::unique_ptr<Row> MakeAddLineRow(const std::filesystem::path& folder);
