#include "Measure.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Failure.h"

namespace {

/// A value of /proc/self/status that is given in KiB, in bytes.
std::int64_t StatusBytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return std::stoll(line.substr(name.size() + 1)) * 1024;
  }
  Fail("/proc/self/status has no ", name);
}

void ResetPeak() {
  malloc_trim(0);
  std::ofstream peak("/proc/self/clear_refs");
  peak << '5' << std::flush;
  if (!peak) Fail("the peak of memory can't be reset");
}

[[noreturn]] void MeasureInChild(const std::function<void()>& action, int answer) {
  try {
    ResetPeak();
    const std::int64_t before = StatusBytes("VmRSS");
    action();
    const std::int64_t bytes = StatusBytes("VmHWM") - before;
    if (write(answer, &bytes, sizeof bytes) == sizeof bytes) _exit(0);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
  }
  _exit(1);
}

double ProcessorSeconds() {
  double seconds = 0;
  for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    struct rusage usage = {};
    getrusage(who, &usage);
    for (const struct timeval& part : {usage.ru_utime, usage.ru_stime}) {
      seconds += static_cast<double>(part.tv_sec) + static_cast<double>(part.tv_usec) / 1e6;
    }
  }
  return seconds;
}

}  // namespace

Seconds SecondsOf(const std::function<void()>& action) {
  const double worked = ProcessorSeconds();
  const auto start = std::chrono::steady_clock::now();
  action();
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
  return {passed.count(), ProcessorSeconds() - worked};
}

std::int64_t PeakMemoryOf(const std::function<void()>& action) {
  int ends[2] = {};
  if (pipe(ends) != 0) Fail("no pipe: ", errno);
  const pid_t child = fork();
  if (child < 0) Fail("no child process: ", errno);
  if (child == 0) MeasureInChild(action, ends[1]);
  close(ends[1]);
  std::int64_t bytes = 0;
  const bool answered = read(ends[0], &bytes, sizeof bytes) == sizeof bytes;
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!answered || status != 0) Fail("the measurement of memory failed");
  return bytes;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}
