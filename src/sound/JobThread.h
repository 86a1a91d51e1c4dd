#pragma once

#include <chrono>
#include <functional>
#include <memory>

/// Runs jobs one after another on a thread of its own, for callers who wait no longer than they
/// like: a job may hang for as long as it wants, even beyond this object's end and the program's.
class JobThread {
 public:
  /// A job must not throw, and owns what it uses.
  using Job = std::function<void()>;

  JobThread() = default;
  /// The thread ends by itself after the jobs that it has been given.
  ~JobThread();
  JobThread(const JobThread&) = delete;
  JobThread& operator=(const JobThread&) = delete;
  JobThread(JobThread&&) = delete;
  JobThread& operator=(JobThread&&) = delete;

  /// Puts a job behind those that wait. Fails if the system has no thread to give.
  void Post(Job job);
  /// Forgets the jobs that haven't begun.
  void DropWaiting();
  /// Waits until all jobs are done, or for so long.
  void Wait(std::chrono::milliseconds longest);

 private:
  struct Line;

  static void Run(const std::shared_ptr<Line>& line);

  std::shared_ptr<Line> line_;  // none until the first job
};
