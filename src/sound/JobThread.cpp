#include "sound/JobThread.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/Failure.h"

// Shared with the thread, which may outlive the object.
struct JobThread::Line {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Job> jobs;
  bool isBusy = false;
  bool isEnding = false;
};

JobThread::~JobThread() {
  if (!line_) return;
  const std::lock_guard lock(line_->mutex);
  line_->isEnding = true;
  line_->changed.notify_all();
}

void JobThread::Post(Job job) {
  if (!line_) {
    const auto line = std::make_shared<Line>();
    try {
      std::thread([line] { Run(line); }).detach();
    } catch (const std::system_error& error) {
      Fail("no thread: ", error.what());
    }
    line_ = line;
  }
  const std::lock_guard lock(line_->mutex);
  line_->jobs.push_back(std::move(job));
  line_->changed.notify_all();
}

void JobThread::DropWaiting() {
  if (!line_) return;
  const std::lock_guard lock(line_->mutex);
  line_->jobs.clear();
}

void JobThread::Wait(std::chrono::milliseconds longest) {
  if (!line_) return;
  std::unique_lock lock(line_->mutex);
  line_->changed.wait_for(lock, longest, [&] { return line_->jobs.empty() && !line_->isBusy; });
}

void JobThread::Run(const std::shared_ptr<Line>& line) {
  std::unique_lock lock(line->mutex);
  for (;;) {
    line->changed.wait(lock, [&] { return !line->jobs.empty() || line->isEnding; });
    if (line->jobs.empty()) return;
    Job job = std::exchange(line->jobs.front(), {});
    line->jobs.pop_front();
    line->isBusy = true;
    lock.unlock();
    job();
    job = {};
    lock.lock();
    line->isBusy = false;
    line->changed.notify_all();
  }
}
