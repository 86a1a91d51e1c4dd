// Opening packs with a large index.

#include <string>

#include "Engine.h"
#include "PlainFile.h"
#include "Row.h"
#include "TestBytes.h"
#include "pack/ArchiveWriter.h"
#include "pack/Catalogue.h"
#include "pack/clsEncryption.h"
#include "platform/Failure.h"
#include "platform/Text.h"

namespace {

constexpr std::size_t kTypes = 10;

/// A script as the index has it, line breaks as "<nl>".
std::string Script(SeededNumbers& numbers, std::size_t length) {
  std::string script;
  while (script.size() < length) {
    script += "ReplaceIMG {<nl>models\\gta3.img<nl>";
    for (std::size_t lines = 1 + numbers.Below(12); lines > 0; --lines) {
      script += "vehicle" + std::to_string(numbers.Below(100000)) + ".dff<nl>";
    }
    script += "}<nl><nl>";
  }
  script.resize(length, ' ');
  return script;
}

/// The index of a pack of `mods` mods whose scripts have `scriptLength` bytes.
void WriteIndex(const std::filesystem::path& path, std::size_t mods, std::size_t scriptLength) {
  SeededNumbers numbers(4);
  PlainFile file(path, PlainFile::Mode::kCreate);
  file.Write("[Info]\r\nTitle=Test\r\nHTML=<b>Test</b>\r\nHTMLHeight=80\r\n");
  for (std::size_t n = 1; n <= kTypes; ++n) {
    file.Write(Concat("[Typ", n, "]\r\nTypeID=", n, "\r\nName=Typ ", n, "\r\n"));
  }
  for (std::size_t n = 1; n <= mods; ++n) {
    file.Write(Concat("[Mod", n, "]\r\nTypeID=", 1 + n % kTypes, "\r\nName=Mod ", n,
                      "\r\nDescription=Ein Fahrzeug\r\nPicture=bild", n,
                      ".jpg\r\nReadme=Zeile 1<nl>Zeile 2\r\nInstallScript=",
                      Script(numbers, scriptLength), "\r\n"));
  }
}

/// The cipher of the index and nothing else, over bytes in memory.
class BareCipher {
 public:
  BareCipher() {
    for (const char16_t unit : Text::ToUtf16(clsEncryption::IndexPassword())) {
      key_ += static_cast<char>(unit & 255U);
      key_ += static_cast<char>(unit >> 8U);
    }
  }
  void Run(char* bytes, std::size_t count) {
    auto* const key = reinterpret_cast<unsigned char*>(key_.data());
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t next = position_ + 1 < key_.size() ? position_ + 1 : 1;
      const auto product = static_cast<unsigned char>(key[position_] * position_);
      bytes[i] = static_cast<char>(static_cast<unsigned char>(bytes[i]) ^ key[position_] ^ product);
      key[position_] = static_cast<unsigned char>(key[position_] + key[next]);
      position_ = next;
    }
  }

 private:
  std::string key_;
  std::size_t position_ = 0;
};

/// A pack that holds an index and no payload, and its opening.
class LargePack {
 public:
  LargePack(const std::filesystem::path& folder, std::size_t mods, std::size_t scriptLength)
      : engine_(folder), path_(folder / "pack.kvpk"), mods_(mods) {
    const std::filesystem::path plain = folder / "index";
    WriteIndex(plain, mods, scriptLength);
    indexSize_ = static_cast<std::int64_t>(std::filesystem::file_size(plain));
    const std::string ciphered = engine_.DosText(folder / "index.ciphered");
    clsEncryption encryption(engine_.Files());
    encryption.InputFileName = engine_.DosText(plain);
    encryption.OutputFileName = ciphered;
    encryption.Password = clsEncryption::IndexPassword();
    encryption.EncryptFile();
    ArchiveWriter pack;
    pack.AddLater(std::string(kIndexEntry), [&] { return engine_.Files().ReadWhole(ciphered); });
    pack.Write(engine_.Files(), engine_.DosText(path_));
  }

  [[nodiscard]] std::int64_t IndexSize() const { return indexSize_; }
  /// What an opening leaves is freed outside the measured time: a program frees it when it opens
  /// the next pack.
  void Forget() { outcome_ = PackOpening(); }
  void Open() {
    InstallSession& session = engine_.Session();
    outcome_ =
        OpenKELVOFile(engine_.Files(), session.ModPackIMG, session.TempDir, engine_.DosText(path_));
  }
  /// Reads the pack into memory, and runs the cipher over the index once.
  void ReadBare() {
    constexpr std::size_t kSector = 2048;
    std::string pack = ReadPlain(path_);
    BareCipher().Run(pack.data() + kSector, pack.size() - kSector);
    if (pack.compare(kSector, 6, "[Info]") != 0) Fail("the bare cipher isn't the index's");
  }
  void Check() const {
    if (outcome_.failure) Fail("the pack wasn't opened: ", *outcome_.failure);
    if (outcome_.catalogue.Mods.size() != mods_ + 1 ||
        outcome_.catalogue.ModTypes.size() != kTypes + 1 ||
        outcome_.catalogue.Mods.back().InstallScript.empty()) {
      Fail("the catalogue isn't whole");
    }
  }

 private:
  Engine engine_;
  std::filesystem::path path_;
  std::size_t mods_;
  std::int64_t indexSize_ = 0;
  PackOpening outcome_;
};

/// One opening, with its two temp files, against a read of the pack into memory and one pass of
/// the cipher over it there. Neither side syncs: nothing of it outlives the opening.
class OpenRow : public Row {
 public:
  explicit OpenRow(const std::filesystem::path& folder)
      : Row({"open", "opening a pack of 1,000 mods with scripts of 60,000 bytes",
             "reading the file and one cipher pass over the index", 3}),
        pack_(folder, 1000, 60000) {}

  [[nodiscard]] std::int64_t MemoryLimit() const override { return 3 * pack_.IndexSize(); }
  void RunYardstick() override { pack_.ReadBare(); }
  void BeforeWork() override { pack_.Forget(); }
  void RunWork() override { pack_.Open(); }
  void CheckWork() override { pack_.Check(); }

 private:
  LargePack pack_;
};

/// As many bytes in ten times as many mods: the work must go by the bytes.
class OpenManyRow : public Row {
 public:
  explicit OpenManyRow(const std::filesystem::path& folder)
      : Row({"open-many", "the same with 10,000 mods and scripts of 6,000 bytes", "the row above",
             1.5}),
        few_(folder / "few", 1000, 60000),
        many_(folder / "many", 10000, 6000) {}

  [[nodiscard]] std::int64_t MemoryLimit() const override { return 3 * many_.IndexSize(); }
  void BeforeYardstick() override {
    many_.Forget();
    few_.Forget();
  }
  void RunYardstick() override { few_.Open(); }
  void BeforeWork() override { BeforeYardstick(); }
  void RunWork() override { many_.Open(); }
  void CheckWork() override { many_.Check(); }

 private:
  LargePack few_;
  LargePack many_;
};

}  // namespace

std::unique_ptr<Row> MakeOpenRow(const std::filesystem::path& folder) {
  return std::make_unique<OpenRow>(folder);
}

std::unique_ptr<Row> MakeOpenManyRow(const std::filesystem::path& folder) {
  return std::make_unique<OpenManyRow>(folder);
}
