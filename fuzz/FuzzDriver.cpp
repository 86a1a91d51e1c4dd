// Feeds a fuzz target with random inputs made of its words: FUZZ_TARGET [SECONDS [SEED]]. The seed
// is printed, and the same seed gives the same inputs.

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "FuzzTarget.h"

namespace {

using Clock = std::chrono::steady_clock;

class Inputs {
 public:
  explicit Inputs(std::uint32_t seed) : random_(seed) {}

  // A row of words and random bytes, now and then of something long, and now and then a former
  // input that has been damaged.
  std::string Next() {
    constexpr int kMostParts = 40;
    if (!last_.empty() && Drawn(0, 3) == 0) return last_ = Damaged(last_);
    last_.clear();
    for (int parts = Drawn(0, kMostParts); parts > 0; --parts) last_ += Part();
    return last_;
  }

 private:
  int Drawn(int lowest, int highest) {
    return std::uniform_int_distribution(lowest, highest)(random_);
  }
  char Byte() { return static_cast<char>(Drawn(0, 255)); }

  std::string Part() {
    constexpr int kLong = 5000;
    switch (Drawn(0, 19)) {
      case 0:
        return Part().append(static_cast<std::size_t>(Drawn(0, kLong)), Byte());
      case 1:
      case 2:
        return {Byte()};
      default:
        return words_[static_cast<std::size_t>(Drawn(0, static_cast<int>(words_.size()) - 1))];
    }
  }

  std::string Damaged(std::string input) {
    constexpr int kMostChanges = 8;
    for (int changes = Drawn(1, kMostChanges); changes > 0 && !input.empty(); --changes) {
      const auto at = static_cast<std::size_t>(Drawn(0, static_cast<int>(input.size()) - 1));
      input.replace(at, static_cast<std::size_t>(Drawn(0, kMostChanges)), Part());
    }
    return input;
  }

  std::mt19937 random_;
  std::vector<std::string> words_ = FuzzWords();
  std::string last_;
};

}  // namespace

int main(int argc, char** argv) {
  const long seconds = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 10;
  const auto seed = argc > 2 ? static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10))
                             : std::random_device()();
  std::cout << "seed " << seed << std::endl;
  Inputs inputs(seed);
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  std::uint64_t runs = 0;
  for (; Clock::now() < end; ++runs) {
    const std::string input = inputs.Next();
    const std::vector<std::uint8_t> bytes(input.begin(), input.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  std::cout << runs << " inputs\n";
  return 0;
}
