#pragma once

/// The windowed program from its start to its end; returns the exit status.
int RunKelvo(int argc, char** argv);
