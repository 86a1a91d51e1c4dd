// A name that is deleted is free at once here; under Wine it is held while the file is open.

#include <gtest/gtest.h>

#include "pack/clsEncryption.h"
#include "platform/FileSystem.h"
#include "support/TempFolder.h"

namespace {

TEST(OwnOutput, AFileCanBeItsOwnOutput) {
  const TempFolder folder;
  const FileSystem files;
  folder.Write("in", std::string(100000, 'x'));
  clsEncryption cipher(files);
  cipher.Password = clsEncryption::IndexPassword();
  cipher.InputFileName = folder.Dos("in");
  cipher.OutputFileName = folder.Dos("out");
  cipher.EncryptFile();
  cipher.OutputFileName = folder.Dos("in");
  cipher.EncryptFile();
  EXPECT_TRUE(folder.Read("in") == folder.Read("out"));
}

}  // namespace
