#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "chat/IRCEvents.h"

/// Cuts what one read brought into lines: CR, LF and CR LF end one alike, empty ones are dropped.
/// Nothing is carried over to the next read, on purpose: a line that the network delivers in two
/// reads is two lines.
std::vector<std::string> CutLines(std::string_view received);

/// What an IRC client knows and how it reads its server: lines in, events and lines out.
///
/// It reads by blanks and by the place of words, not by the protocol's grammar: the second word is
/// the command, the third the target. A statement that needs a word which the line doesn't have is
/// left out, and the next one runs. Several of its rules are odd; those that look like mistakes
/// carry a comment and are kept, for the chat window shows what they give.
///
/// Source of the commands and numbers: RFC 1459 and what servers made of it.
class IrcParser {
 public:
  /// `events` must outlive the object.
  explicit IrcParser(IRCEvents& events) : events_(events) {}
  virtual ~IrcParser() = default;
  IrcParser(const IrcParser&) = delete;
  IrcParser& operator=(const IrcParser&) = delete;
  IrcParser(IrcParser&&) = delete;
  IrcParser& operator=(IrcParser&&) = delete;

  /// Reads one line of the server, without its end.
  void ProcessLine(const std::string& line);

  /// Fills `ModeItems` from mode letters and the words behind them. Every letter takes a word,
  /// whether its mode has a parameter or not. Each letter gives one item:
  ///
  ///     " +v"      no word was left
  ///     "+v"       the word equals `Filter`, case ignored
  ///     "word +v"  any other word
  void SplitFlags(std::string_view flags, std::string_view Nicks, std::string_view Filter = {});
  [[nodiscard]] const std::vector<std::string>& ModeItems() const { return ModeItems_; }

  // Of the first word of a line, such as ":nick!ident@host".
  [[nodiscard]] static std::string UserNick(std::string_view recv);
  [[nodiscard]] static std::string UserIdent(std::string_view recv);
  [[nodiscard]] static std::string UserHost(std::string_view recv);

  /// Channels that this client has joined, in the order of joining.
  [[nodiscard]] const std::vector<std::string>& Channels() const { return Channels_; }
  /// The client's host as the server reports it, and the one that it shows instead.
  [[nodiscard]] const std::string& Host() const { return Host_; }
  [[nodiscard]] const std::string& VHost() const { return VHost_; }
  /// The client's own user modes, one letter each.
  [[nodiscard]] const std::string& Modes() const { return Modes_; }

  // Writing stores the value and sends nothing: it counts from the next registration.
  [[nodiscard]] const std::string& NickName() const { return NickName_; }
  void SetNickName(std::string_view value) { NickName_ = value; }
  [[nodiscard]] const std::string& Ident() const { return Ident_; }
  void SetIdent(std::string_view value) { Ident_ = value; }

  /// Sends a line, without its end, if the connection stands; does nothing otherwise.
  virtual void SendData(const std::string& Data) = 0;

 protected:
  /// Sends a line, without its end, or fails.
  virtual void SendLine(const std::string& line) = 0;

  /// For a registration. The server isn't asked again by this, so after a reconnect by the timer
  /// the host stays empty. Kept on purpose.
  void ForgetHosts();
  void ForgetChannels() { Channels_.clear(); }
  /// Has the next registration ask for the host.
  void AskForHost() { HostKnown_ = false; }
  [[nodiscard]] IRCEvents& Events() const { return events_; }

 private:
  struct Line;
  struct ModeItem;

  void Dispatch(const Line& line);
  void Ready(const Line& line);
  void NickInUse(const Line& line);
  void ChannelRefused(const Line& line);
  void Nick(const Line& line);
  void Part(const Line& line);
  void Join(const Line& line);
  void Kick(const Line& line);
  void Mode(const Line& line);
  void Quit(const Line& line);
  void Topic(const Line& line);
  void UserHostReply(const Line& line);
  void WhoReply(const Line& line);
  void Invite(const Line& line);

  void ApplyMode(const Line& line, const ModeItem& item);
  void ApplyOwnMode(const ModeItem& item);
  void ApplyChannelMode(const Line& line, const ModeItem& item);
  void ApplyBan(const Line& line, const ModeItem& item);
  [[nodiscard]] bool IsMe(std::string_view nick) const;
  [[nodiscard]] bool MatchesMe(std::string_view mask) const;
  template <typename Event, typename... Arguments>
  void Raise(Event event, const Arguments&... arguments);

  IRCEvents& events_;
  std::vector<std::string> Channels_;
  std::vector<std::string> ModeItems_;
  std::vector<std::string> Words_;
  bool HostKnown_ = false;
  bool WhoPending_ = false;
  std::string Ident_ = "Ident";
  std::string Host_;
  std::string NickName_ = "NickName";
  std::string VHost_;
  std::string Modes_;
};
