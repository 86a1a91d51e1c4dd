#include <string>
#include <vector>

#include "platform/Process.h"
#include "tools/CommandLine.h"

int main(int argc, char** argv) {
  Process::PrepareStreams();
  std::vector<std::string> words = Process::Arguments(argc, argv);
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return RunKvpk(static_cast<int>(words.size()), pointers.data());
}
