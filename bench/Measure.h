#pragma once

#include <cstdint>
#include <functional>
#include <vector>

/// What an action took, in seconds: by the steady clock, and of the processors in this process and
/// in those that it waited for. The second leaves out what other programs on the machine took, and
/// waiting for the disk.
struct Seconds {
  double passed;
  double worked;
};
Seconds SecondsOf(const std::function<void()>& action);

/// How far `action` drives the memory of a process above what it holds at the start, in bytes.
/// Runs it in a child process: what the parent has freed and kept is given back to the system
/// there, the kernel's peak mark is reset (/proc/self/clear_refs), and the peak of the resident
/// set (VmHWM) at the end is compared with the resident set at the start. Fails if `action` does.
std::int64_t PeakMemoryOf(const std::function<void()>& action);

/// The middle one of at least one value, or the mean of the middle two.
double Median(std::vector<double> values);
