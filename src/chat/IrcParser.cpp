#include "chat/IrcParser.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "core/EventPacer.h"
#include "core/LinePattern.h"
#include "core/basDebugLog.h"
#include "platform/Failure.h"
#include "platform/Text.h"

namespace {

// What is kept of a server's words beyond one line is held in bounds, so that no server can fill
// the memory. A line of the protocol has 512 bytes, so no honest name is longer. Each channel is
// walked for each KICK; the window joins one.
constexpr std::size_t kLongestName = 512;
constexpr std::size_t kMostChannels = 32;
constexpr std::size_t kMostModes = 256;

constexpr std::size_t kFewestWords = 4;

std::string Kept(std::string_view name) {
  return std::string(name.substr(0, kLongestName));
}

std::vector<std::string> SplitAtBlanks(std::string_view text) {
  std::vector<std::string> words;
  std::size_t start = 0;
  for (std::size_t blank = text.find(' '); blank != std::string_view::npos;
       blank = text.find(' ', start)) {
    words.emplace_back(text.substr(start, blank - start));
    start = blank + 1;
  }
  words.emplace_back(text.substr(start));
  return words;
}

std::string_view WithoutFirst(std::string_view text) {
  return text.empty() ? text : text.substr(1);
}

// The part behind the first `mark` up to the next one; nothing without a mark.
std::optional<std::string_view> Between(std::string_view text, std::string_view mark) {
  const std::size_t first = text.find(mark);
  if (first == std::string_view::npos) return std::nullopt;
  const std::string_view behind = text.substr(first + mark.size());
  return behind.substr(0, behind.find(mark));
}

std::string_view Before(std::string_view text, char mark) {
  return text.substr(0, text.find(mark));
}

// A piece of a line, or none where the line is too short.
struct Piece {
  bool isThere = false;
  std::string text;

  explicit operator bool() const { return isThere; }
  const std::string& operator*() const { return text; }
};

// An argument of an event: a text, or what may be missing.
const std::string* Given(const std::string& text) {
  return &text;
}
const std::string* Given(const std::string* text) {
  return text;
}
const std::string* Given(const Piece& piece) {
  return piece.isThere ? &piece.text : nullptr;
}

using ChannelEvent = void (IRCEvents::*)(IRCEvents::Text channel);
using ModeEvent = void (IRCEvents::*)(IRCEvents::Text channel, IRCEvents::Text nick,
                                      IRCEvents::Text ident, IRCEvents::Text host);
using ParameterModeEvent = void (IRCEvents::*)(IRCEvents::Text channel, IRCEvents::Text nick,
                                               IRCEvents::Text ident, IRCEvents::Text host,
                                               IRCEvents::Text parameter);

template <typename Event>
struct EventRow {
  std::string_view name;
  Event event;
};

template <typename Rows>
auto FindRow(const Rows& rows, std::string_view name) -> decltype(&*rows.begin()) {
  const auto row = std::ranges::find(rows, name, [](const auto& each) { return each.name; });
  return row == rows.end() ? nullptr : &*row;
}

constexpr std::array kRefusals = std::to_array<EventRow<ChannelEvent>>({
    {"471", &IRCEvents::OnChanLimit},
    {"473", &IRCEvents::OnChanInvite},
    {"474", &IRCEvents::OnChanBanned},
    {"475", &IRCEvents::OnChanKey},
});

constexpr std::array kOwnFlags = std::to_array<EventRow<ModeEvent>>({
    {"+v", &IRCEvents::OnVoice},
    {"-v", &IRCEvents::OnDeVoice},
    {"+o", &IRCEvents::OnOp},
    {"-o", &IRCEvents::OnDeOp},
});

constexpr std::array kChannelFlags = std::to_array<EventRow<ModeEvent>>({
    {"+i", &IRCEvents::OnSetInvite},
    {"-i", &IRCEvents::OnRemoveInvite},
    {"+m", &IRCEvents::OnSetModerated},
    {"-m", &IRCEvents::OnRemoveModerated},
    {"+s", &IRCEvents::OnSetSecret},
    {"-s", &IRCEvents::OnRemoveSecret},
    {"+p", &IRCEvents::OnSetPrivate},
    {"-p", &IRCEvents::OnRemovePrivate},
});

constexpr std::array kKeyFlags = std::to_array<EventRow<ParameterModeEvent>>({
    {"+k", &IRCEvents::OnSetKey},
    {"-k", &IRCEvents::OnRemoveKey},
});

}  // namespace

std::vector<std::string> CutLines(std::string_view received) {
  constexpr std::string_view kEnds = "\r\n";
  std::vector<std::string> lines;
  std::size_t start = received.find_first_not_of(kEnds);
  while (start != std::string_view::npos) {
    const std::size_t end = received.find_first_of(kEnds, start);
    lines.emplace_back(received.substr(start, end - start));
    start = received.find_first_not_of(kEnds, end);
  }
  return lines;
}

// One line, split. `words` are all of them; what stands behind a number of blanks comes out of the
// whole line, so that it keeps its own blanks.
struct IrcParser::Line {
  Line(const std::string& text, const std::vector<std::string>& wordsOfText)
      : whole(text),
        words(wordsOfText),
        nick(UserNick(words[0])),
        ident(UserIdent(words[0])),
        host(UserHost(words[0])) {}

  // The word of that index, from 0; null if the line has fewer.
  [[nodiscard]] const std::string* Word(std::size_t index) const {
    return index < words.size() ? &words[index] : nullptr;
  }

  // The line cut at blanks into at most `count` pieces: the last of them.
  [[nodiscard]] Piece Rest(std::size_t count) const {
    if (words.size() < count) return {};
    std::size_t start = 0;
    for (std::size_t i = 1; i < count; ++i) start += words[i - 1].size() + 1;
    return {true, whole.substr(start)};
  }

  // `Rest` less its first character, normally the colon, but whatever it is.
  [[nodiscard]] Piece Text(std::size_t count) const {
    const Piece rest = Rest(count);
    return {rest.isThere, std::string(WithoutFirst(rest.text))};
  }

  [[nodiscard]] Piece Channel() const {
    const std::string* const word = Word(2);
    if (word == nullptr) return {};
    return {true, ::Text::Replace(*word, ":", "")};
  }

  const std::string& whole;
  const std::vector<std::string>& words;
  std::string nick;
  std::string ident;
  std::string host;
};

struct IrcParser::ModeItem {
  std::string target;
  std::string flag;  // sign and letter
};

std::string IrcParser::UserNick(std::string_view recv) {
  return std::string(WithoutFirst(Before(recv, '!')));
}

std::string IrcParser::UserIdent(std::string_view recv) {
  return std::string(Between(Before(recv, '@'), "!").value_or(""));
}

std::string IrcParser::UserHost(std::string_view recv) {
  return std::string(Between(recv, "@").value_or(""));
}

bool IrcParser::IsMe(std::string_view nick) const {
  return Text::EqualsIgnoringCase(nick, NickName_);
}

void IrcParser::ForgetHosts() {
  Host_.clear();
  VHost_.clear();
}

// Raises an event if all its arguments are there; a handler that fails doesn't stop the parser.
template <typename Event, typename... Arguments>
void IrcParser::Raise(Event event, const Arguments&... arguments) {
  const std::array<const std::string*, sizeof...(arguments)> given = {Given(arguments)...};
  if (std::ranges::find(given, nullptr) != given.end()) return;
  Trapped("IRC.ProcessLine", [this, event, &given] {
    std::apply([&](const auto*... argument) { (events_.*event)(*argument...); }, given);
  });
}

void IrcParser::ProcessLine(const std::string& line) {
  Words_ = SplitAtBlanks(line);
  const Line split(line, Words_);
  // Whatever the command: the chat window reads all messages from here.
  if (Words_.size() >= kFewestWords) {
    Trapped("IRC.ProcessLine",
            [&] { events_.OnDataArrival(line, Words_, Words_[2], *split.Text(kFewestWords)); });
  }
  if (Words_[0] == "PING" && Words_.size() > 1) {
    Trapped("IRC.ProcessLine", [&] { SendLine("PONG " + Words_[1]); });
  }
  if (Words_.size() > 1) Dispatch(split);
}

void IrcParser::Dispatch(const Line& line) {
  struct Command {
    std::string_view name;
    void (IrcParser::*handle)(const Line& line);
  };
  static constexpr std::array kCommands = std::to_array<Command>({
      {"302", &IrcParser::UserHostReply},
      {"352", &IrcParser::WhoReply},
      {"376", &IrcParser::Ready},
      {"422", &IrcParser::Ready},
      {"433", &IrcParser::NickInUse},
      {"471", &IrcParser::ChannelRefused},
      {"473", &IrcParser::ChannelRefused},
      {"474", &IrcParser::ChannelRefused},
      {"475", &IrcParser::ChannelRefused},
      {"INVITE", &IrcParser::Invite},
      {"JOIN", &IrcParser::Join},
      {"KICK", &IrcParser::Kick},
      {"MODE", &IrcParser::Mode},
      {"NICK", &IrcParser::Nick},
      {"PART", &IrcParser::Part},
      {"QUIT", &IrcParser::Quit},
      {"TOPIC", &IrcParser::Topic},
  });
  for (const Command& command : kCommands) {
    // The names are in upper case, so that is the case that counts.
    if (Text::EqualsIgnoringCase(line.words[1], command.name)) return (this->*command.handle)(line);
  }
}

void IrcParser::Ready(const Line& /*line*/) {
  if (!HostKnown_) Trapped("IRC.ProcessLine", [this] { SendLine("USERHOST " + NickName_); });
  Raise(&IRCEvents::OnReady);
}

void IrcParser::NickInUse(const Line& line) {
  Raise(&IRCEvents::OnNickInUse, line.Word(3));
}

void IrcParser::ChannelRefused(const Line& line) {
  Raise(FindRow(kRefusals, line.words[1])->event, line.Word(3));
}

void IrcParser::Nick(const Line& line) {
  const auto newNick = line.Channel();
  if (!IsMe(line.nick)) return Raise(&IRCEvents::OnNickChangeOther, line.nick, newNick);
  if (newNick) NickName_ = Kept(*newNick);
  Raise(&IRCEvents::OnNickChange, line.nick, std::string(NickName_));
}

// The event stands inside the walk, so it comes once for each channel looked at, match or not, and
// not at all without channels. A removal moves the rest down under the walk. Kept on purpose.
void IrcParser::Part(const Line& line) {
  const auto channel = line.Channel();
  if (!IsMe(line.nick)) {
    return Raise(&IRCEvents::OnPartOther, channel, line.nick, line.ident, line.host);
  }
  const std::size_t count = Channels_.size();
  for (std::size_t i = 0; channel && i < count; ++i) {
    if (i < Channels_.size() && Text::EqualsIgnoringCase(Channels_[i], *channel)) {
      Channels_.erase(Channels_.begin() + static_cast<std::ptrdiff_t>(i));
    }
    Raise(&IRCEvents::OnPart, channel);
  }
}

void IrcParser::Join(const Line& line) {
  const auto channel = line.Channel();
  if (!IsMe(line.nick)) {
    return Raise(&IRCEvents::OnJoinOther, channel, line.nick, line.ident, line.host);
  }
  if (channel && Channels_.size() < kMostChannels) Channels_.push_back(Kept(*channel));
  Raise(&IRCEvents::OnJoin, channel);
}

// The same walk as for PART, but the case of the channel counts here. Kept on purpose.
void IrcParser::Kick(const Line& line) {
  constexpr std::size_t kReason = 5;
  const auto channel = line.Word(2);
  const auto victim = line.Word(3);
  if (!victim) return;
  const auto reason = line.Text(kReason);
  if (!IsMe(*victim)) {
    return Raise(&IRCEvents::OnKickOther, channel, victim, line.nick, line.ident, line.host,
                 reason);
  }
  const std::size_t count = Channels_.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (i < Channels_.size() && Channels_[i] == *channel) {
      Channels_.erase(Channels_.begin() + static_cast<std::ptrdiff_t>(i));
    }
    Raise(&IRCEvents::OnKick, channel, line.nick, line.ident, line.host, reason);
  }
}

void IrcParser::Quit(const Line& line) {
  Raise(&IRCEvents::OnQuitOther, line.nick, line.ident, line.host, line.Text(3));
}

void IrcParser::Topic(const Line& line) {
  Raise(&IRCEvents::OnTopicChange, line.Word(2), line.Text(4), line.nick, line.ident, line.host);
}

// ":server 302 me :me=+ident@host": the host behind the first "=+".
void IrcParser::UserHostReply(const Line& line) {
  if (HostKnown_) return;
  const std::string_view reply = Between(line.whole, "=+").value_or("");
  if (const auto host = Between(reply, "@")) Host_ = Kept(Text::Trim(*host));
  HostKnown_ = true;
}

// ":server 352 me #channel ident host server nick ..."
void IrcParser::WhoReply(const Line& line) {
  constexpr std::size_t kHost = 5;
  if (line.words.size() < kFewestWords || !WhoPending_ || !VHost_.empty()) return;
  if (const auto host = line.Word(kHost)) VHost_ = Kept(*host);
  Raise(&IRCEvents::OnNewHost, std::string(Host_), std::string(VHost_));
}

void IrcParser::Invite(const Line& line) {
  const auto channel = line.Word(3);
  if (!channel || !IsMe(line.words[2])) return;
  Raise(&IRCEvents::OnGetInvite, line.nick, line.ident, line.host,
        std::string(WithoutFirst(*channel)));
}

void IrcParser::SplitFlags(std::string_view flags, std::string_view Nicks,
                           std::string_view Filter) {
  ModeItems_.clear();
  const std::vector<std::string> words =
      Nicks.empty() ? std::vector<std::string>() : SplitAtBlanks(Nicks);
  std::size_t next = 0;
  char sign = '+';
  for (const char letter : flags) {
    if (letter == '+' || letter == '-') {
      sign = letter;
      continue;
    }
    const std::string flag = {sign, letter};
    if (next >= words.size()) {
      ModeItems_.push_back(" " + flag);
    } else if (Text::EqualsIgnoringCase(words[next], Filter)) {
      ModeItems_.push_back(flag);
    } else {
      ModeItems_.push_back(words[next] + " " + flag);
    }
    ++next;
  }
}

void IrcParser::Mode(const Line& line) {
  constexpr std::size_t kParameters = 5;
  const auto flags = line.Word(3);
  if (!flags) return;
  const std::string parameters = line.Rest(kParameters).text;  // none counts as empty
  SplitFlags(*flags, parameters);
  const std::vector<std::string> items = ModeItems_;
  for (const std::string& item : items) {
    // An item of the second kind has no blank, and so no flag: it does nothing.
    const std::size_t blank = item.find(' ');
    if (blank == std::string::npos) continue;
    ApplyMode(line, {item.substr(0, blank), item.substr(blank + 1)});
  }
  const std::string_view shown = flags->starts_with(':') ? WithoutFirst(*flags) : *flags;
  Raise(&IRCEvents::OnMode, line.Word(2), std::string(shown), parameters, line.nick, line.ident,
        line.host);
}

void IrcParser::ApplyMode(const Line& line, const ModeItem& item) {
  if (IsMe(item.target)) {
    if (const auto* const row = FindRow(kOwnFlags, item.flag)) {
      Raise(row->event, line.Word(2), line.nick, line.ident, line.host);
    }
  } else if (IsMe(line.words[2])) {
    ApplyOwnMode(item);
  } else {
    ApplyChannelMode(line, item);
  }
}

// Every letter counts, the colon before the flags among them. Kept on purpose.
void IrcParser::ApplyOwnMode(const ModeItem& item) {
  const char letter = item.flag[1];
  if (item.flag[0] == '-') {
    std::erase(Modes_, letter);
  } else if (Modes_.size() < kMostModes) {
    Modes_ += letter;
  }
}

void IrcParser::ApplyChannelMode(const Line& line, const ModeItem& item) {
  if (item.flag == "+b" || item.flag == "-b") return ApplyBan(line, item);
  if (const auto* const row = FindRow(kChannelFlags, item.flag)) {
    return Raise(row->event, line.Word(2), line.nick, line.ident, line.host);
  }
  if (const auto* const row = FindRow(kKeyFlags, item.flag)) {
    return Raise(row->event, line.Word(2), line.nick, line.ident, line.host, item.target);
  }
  if (item.flag == "+x" && !WhoPending_) {
    WhoPending_ = true;
    SendData("who " + NickName_);  // in lower case, which servers take as well
  } else if (item.flag == "-x") {
    WhoPending_ = false;
    VHost_.clear();
  }
}

void IrcParser::ApplyBan(const Line& line, const ModeItem& item) {
  const bool isSet = item.flag[0] == '+';
  const ParameterModeEvent mine = isSet ? &IRCEvents::OnBan : &IRCEvents::OnUnBan;
  const ParameterModeEvent others = isSet ? &IRCEvents::OnBanOther : &IRCEvents::OnUnBanOther;
  Raise(MatchesMe(item.target) ? mine : others, line.Word(2), line.nick, line.ident, line.host,
        item.target);
}

// A mask is a pattern, so "[" and "#" in it don't stand for themselves. A malformed one matches
// nobody.
bool IrcParser::MatchesMe(std::string_view mask) const {
  try {
    const LinePattern pattern(mask);
    const std::string me = NickName_ + "!" + Ident_ + "@";
    EventPacer pacer;  // for nobody: neither mask nor names are long
    return pattern.Matches(me + Host_, pacer) || pattern.Matches(me + VHost_, pacer);
  } catch (const Failure&) {
    return false;
  }
}
