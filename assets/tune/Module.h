#pragma once

#include <cstddef>
#include <string>

#include "Song.h"

/// Bytes of an Amiga module besides those of its instruments' waves.
std::size_t ModuleSizeWithoutWaves(const Song& song);

/// The bytes of an Amiga module with four channels. Throws std::runtime_error if the song doesn't
/// fit one.
std::string WriteModule(const Song& song);
