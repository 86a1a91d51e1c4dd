#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Who hears the events of the IRC client. All text is Windows-1252 bytes. `nick`, `ident` and
/// `host` are those of the line's prefix: the one who did it, not the one it was done to.
///
/// A handler may send and may close the connection, but not destroy the client.
class IRCEvents {
 public:
  using Text = const std::string&;

  IRCEvents() = default;
  virtual ~IRCEvents() = default;
  IRCEvents(const IRCEvents&) = delete;
  IRCEvents& operator=(const IRCEvents&) = delete;
  IRCEvents(IRCEvents&&) = delete;
  IRCEvents& operator=(IRCEvents&&) = delete;

  /// See `CSocketEvents::OnError`.
  virtual void OnError(std::int16_t /*Number*/, Text /*Description*/, std::int32_t /*sCode*/,
                       Text /*Source*/, Text /*HelpFile*/, std::int32_t /*HelpContext*/,
                       bool /*CancelDisplay*/) {}
  virtual void OnTopicChange(Text /*channel*/, Text /*topic*/, Text /*nick*/, Text /*ident*/,
                             Text /*host*/) {}
  virtual void OnConnect() {}
  virtual void OnClose() {}
  /// Every line of at least four words, before any other event of it. `text` is what stands behind
  /// the third blank, less its first character.
  virtual void OnDataArrival(Text /*line*/, const std::vector<std::string>& /*Words*/,
                             Text /*target*/, Text /*text*/) {}
  virtual void OnJoin(Text /*channel*/) {}
  virtual void OnJoinOther(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  /// Once for every channel that was joined, whichever it left.
  virtual void OnPart(Text /*channel*/) {}
  virtual void OnPartOther(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  /// Once for every channel that was joined, whichever it was kicked from.
  virtual void OnKick(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/,
                      Text /*reason*/) {}
  virtual void OnKickOther(Text /*channel*/, Text /*victim*/, Text /*nick*/, Text /*ident*/,
                           Text /*host*/, Text /*reason*/) {}
  virtual void OnNickChange(Text /*oldNick*/, Text /*newNick*/) {}
  virtual void OnNickChangeOther(Text /*oldNick*/, Text /*newNick*/) {}
  virtual void OnNickInUse(Text /*refusedNick*/) {}
  virtual void OnVoice(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnDeVoice(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnOp(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnDeOp(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnMode(Text /*target*/, Text /*flags*/, Text /*parameters*/, Text /*nick*/,
                      Text /*ident*/, Text /*host*/) {}
  virtual void OnReady() {}
  virtual void OnQuitOther(Text /*nick*/, Text /*ident*/, Text /*host*/, Text /*reason*/) {}
  virtual void OnChanBanned(Text /*channel*/) {}
  virtual void OnChanInvite(Text /*channel*/) {}
  virtual void OnChanLimit(Text /*channel*/) {}
  virtual void OnChanKey(Text /*channel*/) {}
  virtual void OnSetInvite(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnRemoveInvite(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnSetKey(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/,
                        Text /*key*/) {}
  virtual void OnRemoveKey(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/,
                           Text /*key*/) {}
  virtual void OnSetSecret(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnRemoveSecret(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnSetModerated(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnRemoveModerated(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnSetPrivate(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnRemovePrivate(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/) {}
  virtual void OnBan(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/,
                     Text /*mask*/) {}
  virtual void OnUnBan(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/,
                       Text /*mask*/) {}
  virtual void OnBanOther(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/,
                          Text /*mask*/) {}
  virtual void OnUnBanOther(Text /*channel*/, Text /*nick*/, Text /*ident*/, Text /*host*/,
                            Text /*mask*/) {}
  virtual void OnNewHost(Text /*Host*/, Text /*VHost*/) {}
  virtual void OnGetInvite(Text /*nick*/, Text /*ident*/, Text /*host*/, Text /*channel*/) {}
};
