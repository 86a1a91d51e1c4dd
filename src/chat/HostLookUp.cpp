#include "chat/HostLookUp.h"

#include <QCoreApplication>
#include <QPointer>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

#include "chat/PostedCall.h"

namespace HostLookUp {
namespace {

constexpr std::chrono::milliseconds kPatience(250);

// Runs `work` on a thread that nobody waits for: a look-up can't be broken off, and the program's
// end must not wait for one.
template <typename Work>
bool RunAside(Work work) {
  try {
    std::thread(std::move(work)).detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

// Where threads drop their answers. It outlives its reader, who may be gone when one comes.
class Mailbox {
 public:
  void Open(CallReceiver* reader) {
    const std::lock_guard lock(mutex_);
    reader_ = reader;
  }
  void Close() { Open(nullptr); }

  void Post(std::function<void()> letter) {
    const std::lock_guard lock(mutex_);
    if (reader_ != nullptr) PostCall(*reader_, std::move(letter));
  }

 private:
  std::mutex mutex_;
  CallReceiver* reader_ = nullptr;
};

// Calls the answers. It belongs to the application object, and goes with it.
class Desk : public CallReceiver {
 public:
  explicit Desk(QObject* parent) : CallReceiver(parent) { mailbox_->Open(this); }
  ~Desk() override { mailbox_->Close(); }
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  Desk(Desk&&) = delete;
  Desk& operator=(Desk&&) = delete;

  bool Start(const std::string& name, Answer answer) {
    const std::uint64_t number = ++lastNumber_;
    answers_.emplace(number, std::move(answer));
    const bool isRunning = RunAside([mailbox = mailbox_, this, number, name] {
      Sockets::Host host = Sockets::LookUpName(name);
      // `this` is the reader: the letter is dropped unless it still lives.
      mailbox->Post([this, number, host] { Deliver(number, host); });
    });
    if (!isRunning) answers_.erase(number);
    return isRunning;
  }

 private:
  void Deliver(std::uint64_t number, const Sockets::Host& host) {
    auto node = answers_.extract(number);
    if (!node.empty()) node.mapped()(host);
  }

  std::shared_ptr<Mailbox> mailbox_ = std::make_shared<Mailbox>();
  std::map<std::uint64_t, Answer> answers_;
  std::uint64_t lastNumber_ = 0;
};

struct Question {
  std::mutex mutex;
  std::condition_variable answered;
  std::optional<std::string> name;
};

}  // namespace

bool Start(const std::string& name, Answer answer) {
  static QPointer<Desk> desk;
  if (desk.isNull()) desk = new Desk(QCoreApplication::instance());
  return desk->Start(name, std::move(answer));
}

std::string NameOf(std::uint32_t ip) {
  static std::uint32_t lastAddress = 0;
  static std::string lastName;
  if (ip == lastAddress && ip != 0) return lastName;
  const auto question = std::make_shared<Question>();
  const bool isRunning = RunAside([question, ip] {
    const Sockets::Host host = Sockets::LookUpAddress(ip);
    const std::lock_guard lock(question->mutex);
    question->name = host.name;
    question->answered.notify_one();
  });
  std::unique_lock lock(question->mutex);
  if (isRunning) {
    question->answered.wait_for(lock, kPatience, [&] { return question->name.has_value(); });
  }
  if (!question->name) return "";  // the next one may be answered in time
  lastAddress = ip;
  lastName = *question->name;
  return lastName;
}

}  // namespace HostLookUp
