// Writes what it was started with, engine text, to opened.txt in its working directory.

#include <filesystem>
#include <fstream>

#include "platform/Process.h"
#include "platform/Text.h"

int main(int argc, char** argv) {
  const auto words = Process::Arguments(argc, argv);
  std::ofstream("opened.tmp", std::ios::binary) << Text::FromUtf8Lossy(words.back());
  std::filesystem::rename("opened.tmp", "opened.txt");
}
