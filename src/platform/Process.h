#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// What a command-line program has to settle with the system about its own process.
namespace Process {

/// Makes sure that the three standard streams are open, and that a reader who goes away ends no
/// run. A stream that the caller has closed would otherwise be lent to the next file opened, and
/// what is printed would be written into that file. Call it first of all.
void PrepareStreams();

/// The words of the command line, UTF-8, the program's own name first.
std::vector<std::string> Arguments(int argc, char** argv);

/// From now on the first wish to stop (Ctrl-C, a termination signal, a terminal that is closed) is
/// only noted, so that a run can end in order; the second one ends the process.
void CatchStop();
/// The number of the signal by which that wish came; 0 if there is none.
int StopRequested();

/// Makes a folder in `parent`, with a name that begins with `prefix` and nobody else has, readable
/// by its owner alone from the start.
std::filesystem::path MakePrivateFolder(const std::filesystem::path& parent,
                                        const std::string& prefix);
/// Whether something is such a folder of ours: no link to one, and nobody else's.
bool IsPrivateFolder(const std::filesystem::path& folder);

}  // namespace Process
