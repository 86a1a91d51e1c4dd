#pragma once

#include <vector>

#include "Song.h"

/// The tune's instruments, synthesised; the first is number 1. A wave whose cycle is 32 samples
/// sounds an octave above one of 64 at the same note: with 32, C-2 is the middle C.
///
/// The last one is a crash cymbal, which takes as many samples as it is given.
std::vector<Instrument> MakeInstruments();
/// The crash cymbal, `length` samples long.
Instrument MakeCrash(std::size_t length);
