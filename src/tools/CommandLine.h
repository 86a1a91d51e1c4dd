#pragma once

/// The whole of `kvpk`: reads the command line, runs the subcommand, and returns the exit status
/// (see `ExitStatus`).
int RunKvpk(int argc, char** argv);
