#include "tools/Kvpk.h"

#include <array>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include "pack/ArchiveWriter.h"
#include "pack/clsEncryption.h"
#include "pack/clsIMGtool.h"
#include "platform/FileSystem.h"

KvpkRun Kvpk(const TempFolder& folder, const std::vector<std::string>& arguments) {
  const TempFolder own;
  own.MakeFolder("tmp");
  std::vector<std::string> words{KVPK_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  std::string path = "PATH=/usr/bin:/bin";
  std::string temp = "TMPDIR=" + own.At("tmp").string();
  std::string home = "HOME=" + own.At("tmp").string();
  std::array<char*, 4> environment{path.data(), temp.data(), home.data(), nullptr};

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_addopen(&actions, 1, own.At("out").c_str(), kFlags, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, own.At("err").c_str(), kFlags, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, folder.Native().c_str());
  pid_t process = 0;
  const int error =
      posix_spawn(&process, KVPK_PROGRAM, &actions, nullptr, argv.data(), environment.data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("can't start " KVPK_PROGRAM);
  int status = 0;
  waitpid(process, &status, 0);
  EXPECT_EQ(own.List("tmp"), std::vector<std::string>{}) << "temporary files are left";
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, own.Read("out"), own.Read("err")};
}

void WriteArchive(const TempFolder& folder, std::string_view file,
                  const std::vector<StoredEntry>& entries) {
  ArchiveWriter writer;
  for (const StoredEntry& entry : entries) writer.Add(entry.name, entry.data);
  writer.Write(FileSystem(), folder.Dos(file));
}

void WritePack(const TempFolder& folder, std::string_view file, const std::string& index,
               const std::vector<StoredEntry>& entries) {
  const TempFolder own;
  const FileSystem files;
  own.Write("plain", index);
  clsEncryption cipher(files);
  cipher.InputFileName = own.Dos("plain");
  cipher.OutputFileName = own.Dos("ciphered");
  cipher.Password = clsEncryption::IndexPassword();
  cipher.EncryptFile();
  std::vector<StoredEntry> all{{"modpack.ini", own.Read("ciphered")}};
  all.insert(all.end(), entries.begin(), entries.end());
  WriteArchive(folder, file, all);
}

std::map<std::string, std::string> EntriesOf(const TempFolder& folder, std::string_view file) {
  const FileSystem files;
  clsIMGtool archive(files);
  EXPECT_TRUE(archive.Load(folder.Dos(file)));
  const std::string bytes = folder.Read(file);
  std::map<std::string, std::string> entries;
  for (const udtIMGEntry& entry : archive.Entries()) {
    entries.try_emplace(entry.Name, bytes.substr(static_cast<std::size_t>(entry.Offset),
                                                 static_cast<std::size_t>(entry.Size)));
  }
  return entries;
}
