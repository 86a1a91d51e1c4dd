#pragma once

#include <string>

/// The click as the bytes of a wave file: PCM, mono, 8 bits, 22,050 samples a second, 373 samples.
std::string MakeClick();
