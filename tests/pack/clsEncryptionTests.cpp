#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pack/clsEncryption.h"
#include "platform/FileSystem.h"
#include "support/RawArchive.h"
#include "support/TempFolder.h"

using namespace std::string_literals;
using RawArchive::Noise;

namespace {

/// The key stream, by the plain arithmetic of its definition.
std::string KeyStream(std::u16string_view passPhrase, std::size_t length) {
  std::vector<int> key;
  for (const int unit : passPhrase) key.insert(key.end(), {unit % 256, unit / 256});
  const std::size_t highest = key.size() - 1;
  std::string stream;
  std::size_t position = 0;
  while (stream.size() < length) {
    const int k = key[position];
    stream += static_cast<char>(k ^ (k * static_cast<int>(position) % 256));
    if (position >= highest) {
      key[position] = (key[position] + key[1]) % 256;
      position = 1;
    } else {
      key[position] = (key[position] + key[position + 1]) % 256;
      ++position;
    }
  }
  return stream;
}

std::string Xor(std::string text, const std::string& stream) {
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>(text[i] ^ stream[i]);
  return text;
}

class Encryption : public testing::Test {
 protected:
  Encryption() {
    cipher.InputFileName = folder.Dos("in");
    cipher.OutputFileName = folder.Dos("out");
    cipher.MessageBox = [this](const std::string& text, const std::string& title) {
      messages.emplace_back(text, title);
    };
    cipher.FileProgress = [this](float fraction) { progress.push_back(fraction); };
  }

  /// What the cipher makes of a file of these bytes.
  std::string Run(const std::string& bytes, const std::string& password) {
    folder.Write("in", bytes);
    cipher.Password = password;
    progress.clear();
    messages.clear();
    cipher.EncryptFile();
    return folder.Read("out");
  }

  TempFolder folder;
  FileSystem files;
  clsEncryption cipher{files};
  std::vector<std::pair<std::string, std::string>> messages;  // text, title
  std::vector<float> progress;
};

TEST_F(Encryption, KnownBytes) {
  // "AB" is the key 41 00 42 00, which goes on as follows over bytes of 0:
  //   position      0  1  2  3  1  2  3  1  2
  //   key there    41 00 42 00 42 42 42 84 84
  //   plus next    41 42 42 42 84 84 C6 08 ..   (the last position's next one is position 1)
  //   x position    0  0 84  0 42 84 C6 84 08
  EXPECT_EQ(Run(std::string(9, '\0'), "AB"), "\x41\x00\xC6\x00\x00\xC6\x84\x00\x8C"s);
  // One character: the walk stays at position 1, where key and product cancel out.
  EXPECT_EQ(Run("AAAA", "A"), "\0AAA"s);
  EXPECT_EQ(Run("\0\0\0"s, "\x80"), "\xAC\0\0"s);  // the euro sign is 20AC
}

TEST_F(Encryption, FollowsTheKeyWhateverTheLength) {
  constexpr std::u16string_view kIndexPhrase = u"___ZiTrOnEnTEE_//_mod_depots_\u00D1\u00F8";
  const std::vector<std::pair<std::size_t, std::vector<float>>> cases = {
      {0, {0}},
      {32768, {0, 1}},
      {32769, {0, 32767.F / 32769.F, 1}},
      {65536, {0, 32767.F / 65536.F, 65534.F / 65536.F, 1}}};
  folder.Write("out", Noise(100000, 30));  // a longer output is replaced
  for (const auto& [length, expectedProgress] : cases) {
    const std::string plain = Noise(length, 31);
    const std::string ciphered = Run(plain, clsEncryption::IndexPassword());
    EXPECT_TRUE(ciphered == Xor(plain, KeyStream(kIndexPhrase, length))) << length;
    EXPECT_EQ(progress, expectedProgress) << length;
  }
  // The longest key has 128 bytes; its last product is 255 * 127.
  EXPECT_TRUE(Run(std::string(5000, '\0'), std::string(64, '\xFF')) ==
              KeyStream(std::u16string(64, 0xFF), 5000));
  EXPECT_THAT(messages, testing::IsEmpty());
}

TEST_F(Encryption, ShowsItsFailuresAndGoesOn) {
  cipher.Password = "x";
  folder.Write("out", "older");
  cipher.EncryptFile();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_THAT(messages[0].first, testing::StartsWith("Error: 2. open "));
  EXPECT_EQ(messages[0].second, "EncryptFile");
  EXPECT_EQ(folder.Read("out"), "older");
  EXPECT_THAT(folder.List(), testing::ElementsAre("out"));  // the input isn't made
  EXPECT_THAT(progress, testing::IsEmpty());

  // Without a key every byte fails by itself and stays.
  EXPECT_EQ(Run("abc", ""), "abc");
  ASSERT_EQ(messages.size(), 3U);
  EXPECT_EQ(messages[2].second, "EncryptByte");

  // A byte whose product doesn't fit 16 bits stays as far as it was processed: 255 * 129.
  EXPECT_EQ(Run(std::string(200, '\0'), std::string(70, '\xFF')).size(), 200U);
  EXPECT_THAT(messages, testing::Each(testing::Pair(testing::_, "EncryptByte")));
}

}  // namespace
