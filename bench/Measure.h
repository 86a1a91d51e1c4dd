#pragma once

#include <cstdint>
#include <functional>
#include <vector>

/// Seconds that `action` takes, by the steady clock.
double SecondsOf(const std::function<void()>& action);

/// How far `action` drives the memory of a process above what it holds at the start, in bytes.
/// Runs it in a child process: what the parent has freed and kept is given back to the system
/// there, the kernel's peak mark is reset (/proc/self/clear_refs), and the peak of the resident
/// set (VmHWM) at the end is compared with the resident set at the start. Fails if `action` does.
std::int64_t PeakMemoryOf(const std::function<void()>& action);

/// The middle one of at least one value, or the mean of the middle two.
double Median(std::vector<double> values);
