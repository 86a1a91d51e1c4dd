// The IRC client's stream cutter and line parser. An input is what a server sends: each byte 0 in
// it ends a read.

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include "FuzzTarget.h"
#include "chat/IrcParser.h"

namespace {

// Sending feeds nothing back; the sizes of what is kept are what is watched.
class Client : public IrcParser {
 public:
  Client() : IrcParser(events_) { SetNickName("me"); }

  void SendData(const std::string& Data) override { SendLine(Data); }

  void Check() const {
    constexpr std::size_t kMost = 512;
    const bool isBounded = NickName().size() <= kMost && Host().size() <= kMost &&
                           VHost().size() <= kMost && Modes().size() <= kMost &&
                           Channels().size() <= kMost;
    if (!isBounded) std::abort();
  }

 protected:
  // A line must not end before its end.
  void SendLine(const std::string& line) override {
    if (line.find_first_of("\r\n") != std::string::npos) std::abort();
  }

 private:
  class Events : public IRCEvents {
   public:
    void OnDataArrival(Text line, const std::vector<std::string>& Words, Text target,
                       Text text) override {
      const bool isWhole = Words.size() >= 4 && Words[2] == target && line.ends_with(text);
      if (!isWhole) std::abort();
    }
  };
  Events events_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Client client;
  std::string_view left(reinterpret_cast<const char*>(data), size);
  while (!left.empty()) {
    const std::string_view read = left.substr(0, left.find('\0'));
    for (const std::string& line : CutLines(read)) {
      if (line.empty() || line.find_first_of("\r\n") != std::string::npos) std::abort();
      client.ProcessLine(line);
    }
    left.remove_prefix(std::min(left.size(), read.size() + 1));
  }
  client.Check();
  return 0;
}

std::vector<std::string> FuzzWords() {
  using namespace std::string_literals;
  return {" ",       "  ",       ":",      "!",      "@",     "\r\n",        "\r",
          "\n",      "\0"s,      "+",      "-",      "=+",    "me",          "ME",
          ":me!i@h", ":a!b@c ",  "#c",     "#c ",    "PING ", " PRIVMSG ",   " NICK ",
          " PART ",  " JOIN ",   " KICK ", " MODE ", " QUIT", " TOPIC ",     " INVITE ",
          " 302 ",   " 352 ",    " 376",   " 433 ",  " 471 ", " MODE #c +x", " MODE #c +bb ",
          "*",       "?",        "[",      "]",      "[!a-",  "ovbklimspx",  "+v-o+b",
          "*!*@*",   "[a-z]*#?", " :text "};
}
