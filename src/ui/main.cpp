#include "ui/RunKelvo.h"

int main(int argc, char** argv) {
  return RunKelvo(argc, argv);
}
