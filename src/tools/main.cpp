#include "platform/Process.h"
#include "tools/CommandLine.h"

int main(int argc, char** argv) {
  Process::PrepareStreams();
  return RunKvpk(argc, argv);
}
