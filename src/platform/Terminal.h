#pragma once

/// What the program's standard output is.
namespace Terminal {

/// Whether standard output is a terminal that a person looks at, not a file or a pipe.
bool IsStandardOutput();

}  // namespace Terminal
