#include "tools/CommandLine.h"

int main(int argc, char** argv) {
  return RunKvpk(argc, argv);
}
