#include "pack/PayloadCheck.h"

#include <algorithm>
#include <string>

#include <zlib.h>

#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"

namespace {

constexpr std::size_t kBlock = 65536;

/// The state of an inflate run whose output nobody wants.
class Drain {
 public:
  Drain() : room_(kBlock, '\0') {
    if (inflateInit(&stream_) != Z_OK) Fail("zlib can't start");
  }
  Drain(const Drain&) = delete;
  Drain& operator=(const Drain&) = delete;
  Drain(Drain&&) = delete;
  Drain& operator=(Drain&&) = delete;
  ~Drain() { inflateEnd(&stream_); }

  /// Takes the next bytes of the stream; true at its end.
  bool Take(std::string_view packed) {
    // zlib doesn't write to its input.
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream_.avail_in = static_cast<uInt>(packed.size());
    do {
      stream_.next_out = reinterpret_cast<Bytef*>(room_.data());
      stream_.avail_out = static_cast<uInt>(room_.size());
      const int result = inflate(&stream_, Z_NO_FLUSH);
      length_ += static_cast<std::int64_t>(room_.size() - stream_.avail_out);
      if (result == Z_STREAM_END) return true;
      if (result != Z_OK && result != Z_BUF_ERROR) {
        Fail("its stream is damaged behind ", length_,
             " unpacked bytes: ", stream_.msg != nullptr ? stream_.msg : "zlib gives no reason");
      }
    } while (stream_.avail_out == 0);
    return false;
  }
  [[nodiscard]] std::int64_t Length() const { return length_; }

 private:
  z_stream stream_{};
  std::string room_;
  std::int64_t length_ = 0;
};

}  // namespace

PayloadLength CheckPayload(const FileSystem& files, const clsIMGtool& pack, std::string_view name,
                           const std::function<void()>& doEvents) {
  const auto& entries = pack.Entries();
  const auto entry = std::find_if(entries.begin(), entries.end(),
                                  [&](const udtIMGEntry& each) { return each.Name == name; });
  if (entry == entries.end()) Fail("the pack has no such entry");
  // An event may open another pack, and with it replace the entry.
  const std::int64_t size = entry->Size;
  const File archive = files.OpenForReading(pack.IMGFile());
  Drain drain;
  std::string block(kBlock, '\0');
  std::int64_t position = entry->Offset;
  for (std::int64_t left = size; left > 0;) {
    doEvents();
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(left, kBlock));
    const std::size_t count = position < 0 ? 0 : archive.ReadSomeAt(position, block.data(), wanted);
    if (count == 0) break;
    if (drain.Take(std::string_view(block).substr(0, count))) return {size, drain.Length()};
    position += static_cast<std::int64_t>(count);
    left -= static_cast<std::int64_t>(count);
  }
  Fail("it ends before its stream does, behind ", drain.Length(), " unpacked bytes");
}
