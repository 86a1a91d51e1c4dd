#pragma once

#include <string>

/// What the program's standard streams are, and the person behind them.
namespace Terminal {

/// Whether standard output is a terminal that a person looks at, not a file or a pipe.
bool IsStandardOutput();
/// Whether standard input is a terminal at which a person can answer.
bool IsStandardInput();

/// Prints a question (UTF-8) on standard error and returns the line that is typed on standard
/// input; empty if there is none, or a wish to stop was noted meanwhile.
std::string Ask(const std::string& question);

}  // namespace Terminal
