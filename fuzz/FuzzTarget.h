#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What the target makes of one input; the name is the one that fuzzing engines call. It ends the
/// process if something is wrong. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Words that lead the target into its corners.
std::vector<std::string> FuzzWords();
