#pragma once

#include <string_view>

/// The program's sounds as bytes within the program.
namespace Tune {

/// The tune: the content of music.mod, a tracker module with four channels, 79,948 bytes.
std::string_view Module();

/// The click: a wave file of 432 bytes, PCM, mono, 8 bits, 22,050 samples a second.
std::string_view Click();

}  // namespace Tune
