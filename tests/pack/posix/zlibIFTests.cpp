#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libdeflate.h>
#include <zlib.h>

#include "pack/zlibIF.h"
#include "platform/FileSystem.h"
#include "support/RawArchive.h"
#include "support/TempFolder.h"

using RawArchive::Noise;

namespace {

/// A stream by another implementation.
std::string ByLibdeflate(const std::string& data, int level) {
  const std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor(
      libdeflate_alloc_compressor(level), libdeflate_free_compressor);
  std::string stream(libdeflate_zlib_compress_bound(compressor.get(), data.size()), '\0');
  stream.resize(libdeflate_zlib_compress(compressor.get(), data.data(), data.size(), stream.data(),
                                         stream.size()));
  return stream;
}

std::string ByZlib(std::string data, int level, int windowBits) {
  z_stream state{};
  deflateInit2(&state, level, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
  std::string stream(deflateBound(&state, data.size()) + 64, '\0');
  state.next_in = reinterpret_cast<Bytef*>(data.data());
  state.avail_in = static_cast<uInt>(data.size());
  state.next_out = reinterpret_cast<Bytef*>(stream.data());
  state.avail_out = static_cast<uInt>(stream.size());
  EXPECT_EQ(deflate(&state, Z_FINISH), Z_STREAM_END);
  stream.resize(state.total_out);
  deflateEnd(&state);
  return stream;
}

/// Text that compresses well and refers far back.
std::string Prose(std::size_t size) {
  const std::string far = Noise(30000, 40);
  std::string text;
  for (unsigned i = 0; text.size() < size; ++i)
    text += i % 50 == 0 ? far : "Der Wagen " + std::to_string(i * 7919) + " rollt.\r\n";
  text.resize(size);
  return text;
}

class Unpacking : public testing::Test {
 protected:
  std::string Unpack(const std::string& stream) {
    folder.Write("in", stream);
    zlib.InputFileName = folder.Dos("in");
    zlib.OutputFileName = folder.Dos("out");
    progress.clear();
    events = 0;
    zlib.Progress = [this](int percent) { progress.push_back(percent); };
    zlib.DoEvents = [this] { ++events; };
    zlib.Decompress();
    return folder.Read("out");
  }

  /// 100 x bytes read / length after each block, up to the block that holds the stream's end.
  static std::vector<int> ProgressOver(std::size_t streamLength, std::size_t fileLength) {
    std::vector<int> values;
    std::size_t read = 0;
    while (read < streamLength) {
      read = std::min(read + 4096, fileLength);
      values.push_back(static_cast<int>(100 * read / fileLength));
    }
    return values;
  }

  TempFolder folder;
  FileSystem files;
  zlibIF zlib{files};
  std::vector<int> progress;
  int events = 0;
};

TEST_F(Unpacking, StreamsOfOthersAtAllLevels) {
  folder.Write("out", Noise(300000, 41));  // a longer output is emptied first
  for (const std::size_t size : {0U, 1U, 4096U, 4097U, 200000U}) {
    for (const std::string& data : {Noise(size, 42), Prose(size)}) {
      for (const int level : {1, 6, 12}) {
        const std::string stream = ByLibdeflate(data, level);
        EXPECT_TRUE(Unpack(stream) == data) << size << " at " << level;
        EXPECT_EQ(progress, ProgressOver(stream.size(), stream.size())) << size;
        EXPECT_GE(static_cast<std::size_t>(events), progress.size() + (size + 4095) / 4096);
      }
      for (int windowBits = 9; windowBits <= 15; ++windowBits) {
        for (const int level : {0, 9})
          EXPECT_TRUE(Unpack(ByZlib(data, level, windowBits)) == data)
              << size << ", " << windowBits;
      }
    }
  }
}

TEST_F(Unpacking, TheFillBehindTheStreamIsIgnored) {
  // Streams that end on, right ahead of and right behind the edge of an input block.
  for (const std::size_t size : {4096U - 11 - 1, 4096U - 11, 4096U - 11 + 1, 50000U}) {
    const std::string data = Noise(size, 43);
    const std::string stream = ByZlib(data, 0, 15);
    for (const std::string& fill :
         {std::string(2047, '\0'), std::string(9000, '\0'), Noise(5000, 44), stream}) {
      EXPECT_TRUE(Unpack(stream + fill) == data) << size;
      EXPECT_EQ(progress, ProgressOver(stream.size(), stream.size() + fill.size())) << size;
    }
  }
}

TEST_F(Unpacking, DamagedInputEndsItWithoutAFailure) {
  EXPECT_EQ(Unpack(""), "");
  EXPECT_THAT(progress, testing::ElementsAre(100));

  const std::string data = Prose(100000);
  const std::string stream = ByLibdeflate(data, 6);
  for (const std::size_t length :
       {std::size_t{1}, std::size_t{2}, stream.size() / 2, stream.size() - 4, stream.size() - 1}) {
    const std::string part = Unpack(stream.substr(0, length));
    EXPECT_TRUE(data.starts_with(part)) << length;
    EXPECT_EQ(progress.back(), 100);
    // Damage, in place of the end.
    const std::string rest(stream.size() - length, '\xA5');
    EXPECT_LE(Unpack(stream.substr(0, length) + rest).size(), 1032 * stream.size());
  }
  EXPECT_EQ(Unpack("PK\x03\x04 something else"), "");

  std::filesystem::remove(folder.At("in"));
  std::filesystem::remove(folder.At("out"));
  zlib.Decompress();
  EXPECT_EQ(folder.List(), std::vector<std::string>{});
}

TEST_F(Unpacking, AFullDiskEndsItWithoutAFailure) {
  const std::string data = Prose(30000);
  const std::string stream = ByLibdeflate(data, 6);
  for (int n = 1; n < 60; ++n) {
    files.Faults().FailAt(n);
    const std::string part = Unpack(stream);
    files.Faults().FailAt(0);
    EXPECT_TRUE(data.starts_with(part) || part == "(missing)") << n;
  }
}

}  // namespace
