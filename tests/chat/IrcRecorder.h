#pragma once

#include <string>
#include <vector>

#include "chat/IRCEvents.h"

/// Writes every event of the IRC client down as "Name(argument|argument)".
class IrcRecorder : public IRCEvents {
 public:
  std::vector<std::string> log;

  std::vector<std::string> Take() { return std::exchange(log, {}); }

  void Note(std::string name, const std::vector<std::string>& arguments) {
    name += "(";
    for (std::size_t i = 0; i < arguments.size(); ++i) name += (i == 0 ? "" : "|") + arguments[i];
    log.push_back(name + ")");
  }

  void OnError(std::int16_t Number, Text Description, std::int32_t /*sCode*/, Text Source,
               Text /*HelpFile*/, std::int32_t /*HelpContext*/, bool /*CancelDisplay*/) override {
    Note("OnError", {std::to_string(Number), Description, Source});
  }
  void OnDataArrival(Text line, const std::vector<std::string>& Words, Text target,
                     Text text) override {
    if (notesData) Note("OnDataArrival", {line, std::to_string(Words.size()), target, text});
  }
  bool notesData = false;

  // One line for each event that has but texts for arguments.
#define RECORD(event, parameters, ...) \
  void event parameters override {     \
    Note(#event, {__VA_ARGS__});       \
  }
  RECORD(OnConnect, ())
  RECORD(OnClose, ())
  RECORD(OnReady, ())
  RECORD(OnJoin, (Text a), a)
  RECORD(OnPart, (Text a), a)
  RECORD(OnNickInUse, (Text a), a)
  RECORD(OnChanBanned, (Text a), a)
  RECORD(OnChanInvite, (Text a), a)
  RECORD(OnChanLimit, (Text a), a)
  RECORD(OnChanKey, (Text a), a)
  RECORD(OnNickChange, (Text a, Text b), a, b)
  RECORD(OnNickChangeOther, (Text a, Text b), a, b)
  RECORD(OnNewHost, (Text a, Text b), a, b)
  RECORD(OnJoinOther, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnPartOther, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnVoice, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnDeVoice, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnOp, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnDeOp, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnQuitOther, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnSetInvite, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnRemoveInvite, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnSetSecret, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnRemoveSecret, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnSetModerated, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnRemoveModerated, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnSetPrivate, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnRemovePrivate, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnGetInvite, (Text a, Text b, Text c, Text d), a, b, c, d)
  RECORD(OnTopicChange, (Text a, Text b, Text c, Text d, Text e), a, b, c, d, e)
  RECORD(OnKick, (Text a, Text b, Text c, Text d, Text e), a, b, c, d, e)
  RECORD(OnSetKey, (Text a, Text b, Text c, Text d, Text e), a, b, c, d, e)
  RECORD(OnRemoveKey, (Text a, Text b, Text c, Text d, Text e), a, b, c, d, e)
  RECORD(OnBan, (Text a, Text b, Text c, Text d, Text e), a, b, c, d, e)
  RECORD(OnUnBan, (Text a, Text b, Text c, Text d, Text e), a, b, c, d, e)
  RECORD(OnBanOther, (Text a, Text b, Text c, Text d, Text e), a, b, c, d, e)
  RECORD(OnUnBanOther, (Text a, Text b, Text c, Text d, Text e), a, b, c, d, e)
  RECORD(OnKickOther, (Text a, Text b, Text c, Text d, Text e, Text f), a, b, c, d, e, f)
  RECORD(OnMode, (Text a, Text b, Text c, Text d, Text e, Text f), a, b, c, d, e, f)
#undef RECORD
};
