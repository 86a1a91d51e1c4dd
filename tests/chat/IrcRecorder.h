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
#define RECORD0(event)    \
  void event() override { \
    Note(#event, {});     \
  }
#define RECORD1(event)          \
  void event(Text a) override { \
    Note(#event, {a});          \
  }
#define RECORD2(event)                  \
  void event(Text a, Text b) override { \
    Note(#event, {a, b});               \
  }
#define RECORD4(event)                                  \
  void event(Text a, Text b, Text c, Text d) override { \
    Note(#event, {a, b, c, d});                         \
  }
#define RECORD5(event)                                          \
  void event(Text a, Text b, Text c, Text d, Text e) override { \
    Note(#event, {a, b, c, d, e});                              \
  }
#define RECORD6(event)                                                  \
  void event(Text a, Text b, Text c, Text d, Text e, Text f) override { \
    Note(#event, {a, b, c, d, e, f});                                   \
  }
  RECORD0(OnConnect)
  RECORD0(OnClose)
  RECORD0(OnReady)
  RECORD1(OnJoin)
  RECORD1(OnPart)
  RECORD1(OnNickInUse)
  RECORD1(OnChanBanned)
  RECORD1(OnChanInvite)
  RECORD1(OnChanLimit)
  RECORD1(OnChanKey)
  RECORD2(OnNickChange)
  RECORD2(OnNickChangeOther)
  RECORD2(OnNewHost)
  RECORD4(OnJoinOther)
  RECORD4(OnPartOther)
  RECORD4(OnVoice)
  RECORD4(OnDeVoice)
  RECORD4(OnOp)
  RECORD4(OnDeOp)
  RECORD4(OnQuitOther)
  RECORD4(OnSetInvite)
  RECORD4(OnRemoveInvite)
  RECORD4(OnSetSecret)
  RECORD4(OnRemoveSecret)
  RECORD4(OnSetModerated)
  RECORD4(OnRemoveModerated)
  RECORD4(OnSetPrivate)
  RECORD4(OnRemovePrivate)
  RECORD4(OnGetInvite)
  RECORD5(OnTopicChange)
  RECORD5(OnKick)
  RECORD5(OnSetKey)
  RECORD5(OnRemoveKey)
  RECORD5(OnBan)
  RECORD5(OnUnBan)
  RECORD5(OnBanOther)
  RECORD5(OnUnBanOther)
  RECORD6(OnKickOther)
  RECORD6(OnMode)
#undef RECORD0
#undef RECORD1
#undef RECORD2
#undef RECORD4
#undef RECORD5
#undef RECORD6
};
