#pragma once

#include <istream>

#include "Song.h"

/// Reads a score: text, one thing a line, `#` begins a comment.
///
///   title TEXT                    at most 20 letters
///   text TEXT                     a line for those who look into the module, at most 22 letters
///   tempo N                       ticks a minute, divided by 24: beats of four rows at six ticks a
///   row groove A B                    ticks of the rows in turns; A takes the even rows cell NAME
///   = CELL              a short name for a cell track NAME INSTRUMENT         begins a track;
///   below it its rows, any number to a line:
///     CELL CELL ...               1, 2 or 4 bars of 16 rows; fewer than 4 are repeated
///   pattern NAME TRACK TRACK TRACK TRACK    one track a channel, "-" for none
///   order PATTERN ...             what is played, in this order; may be given many times
///
/// A cell is NOTE*INSTRUMENT/EFFECT, with or without instrument and effect: `A-2`, `F#1*tom`,
/// `C-2/047`; "." stands for no note and may have an effect too, and so may a short name. A note
/// without an instrument takes the track's. Effects are those of Amiga modules, three hexadecimal
/// digits.
///
/// Tempo and groove go into effects that the tracks leave free. Throws std::runtime_error with
/// the line's number if something isn't right.
Song ReadScore(std::istream& text, std::vector<Instrument> instruments);
