// Unpacking one large payload.

#include <array>
#include <string>

#include <zlib.h>

#include "Engine.h"
#include "PlainFile.h"
#include "Row.h"
#include "TestBytes.h"
#include "platform/Failure.h"

namespace {

constexpr std::size_t kPayloadSize = 256 * kMiB;
constexpr std::size_t kBlock = 4096;

/// Writes `kPayloadSize` bytes as one zlib stream, with a sector's fill behind it.
void WritePayload(const std::filesystem::path& path) {
  SeededNumbers numbers(3);
  PlainFile file(path, PlainFile::Mode::kCreate);
  z_stream stream{};
  if (deflateInit(&stream, Z_DEFAULT_COMPRESSION) != Z_OK) Fail("zlib can't start");
  std::string packed(kMiB, '\0');
  for (std::size_t done = 0; done < kPayloadSize; done += kMiB) {
    std::string bytes = PayloadBytes(numbers, kMiB);
    stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    const int flush = done + kMiB == kPayloadSize ? Z_FINISH : Z_NO_FLUSH;
    do {
      stream.next_out = reinterpret_cast<Bytef*>(packed.data());
      stream.avail_out = static_cast<uInt>(packed.size());
      deflate(&stream, flush);
      file.Write(std::string_view(packed).substr(0, packed.size() - stream.avail_out));
    } while (stream.avail_out == 0);
  }
  deflateEnd(&stream);
  file.Write(std::string(2000, '\0'));
}

/// The bare loop: reads and writes as much at a time as the engine does, and nothing else.
void InflateBare(const std::filesystem::path& from, const std::filesystem::path& to) {
  PlainFile input(from, PlainFile::Mode::kRead);
  PlainFile output(to, PlainFile::Mode::kCreate);
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) Fail("zlib can't start");
  std::array<char, kBlock> in{};
  std::array<char, kBlock> out{};
  const auto restart = [&] {
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = kBlock;
  };
  restart();
  int result = Z_OK;
  while (result == Z_OK) {
    if (stream.avail_in == 0) {
      stream.avail_in = static_cast<uInt>(input.Read(in.data(), in.size()));
      stream.next_in = reinterpret_cast<Bytef*>(in.data());
    }
    result = inflate(&stream, Z_NO_FLUSH);
    if (stream.avail_out == 0 || result == Z_STREAM_END) {
      output.Write(std::string_view(out.data(), kBlock - stream.avail_out));
      restart();
    }
  }
  inflateEnd(&stream);
}

/// The engine's unpacking, with the status texts that it makes for every block, against a loop of
/// read, inflate and write. Neither side syncs, as nobody waits for a temp file.
class DecompressRow : public Row {
 public:
  explicit DecompressRow(const std::filesystem::path& folder)
      : Row({"decompress", "Decompress, a payload of 256 MiB",
             "a bare zlib loop, file to file, same block sizes", 1.15}),
        engine_(folder),
        packed_(folder / "payload.tmp"),
        unpacked_(folder / "payload") {
    WritePayload(packed_);
    zlibIF& zLib = engine_.Session().zLib;
    zLib.InputFileName = engine_.DosText(packed_);
    zLib.OutputFileName = engine_.DosText(unpacked_);
    engine_.Session().StatusPrefix = "Dekomprimieren: payload...";
  }

  [[nodiscard]] std::int64_t MemoryLimit() const override { return 64 * kMiB; }
  void BeforeYardstick() override { std::filesystem::remove(unpacked_); }
  void RunYardstick() override { InflateBare(packed_, unpacked_); }
  void BeforeWork() override { std::filesystem::remove(unpacked_); }
  void RunWork() override { engine_.Session().zLib.Decompress(); }
  void CheckWork() override {
    if (std::filesystem::file_size(unpacked_) != kPayloadSize) Fail("the payload isn't whole");
  }

 private:
  Engine engine_;
  std::filesystem::path packed_;
  std::filesystem::path unpacked_;
};

}  // namespace

std::unique_ptr<Row> MakeDecompressRow(const std::filesystem::path& folder) {
  return std::make_unique<DecompressRow>(folder);
}
