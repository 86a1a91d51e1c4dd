#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "IrcRecorder.h"
#include "chat/IrcParser.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

// Lines in; events and sent lines out, in one log. The client is "me", its ident "id".
class Client : public IrcParser {
 public:
  explicit Client(const Strings& before = {}) : IrcParser(recorder) {
    SetNickName("me");
    SetIdent("id");
    Read(before);
  }

  void SendData(const std::string& Data) override { recorder.log.push_back("> " + Data); }

  Strings Read(const Strings& lines) {
    recorder.log.clear();
    for (const std::string& line : lines) ProcessLine(line);
    return recorder.Take();
  }

  IrcRecorder recorder;

 protected:
  void SendLine(const std::string& line) override { SendData(line); }
};

struct Row {
  Strings before;
  std::string line;
  Strings expected;
};

void Check(const std::vector<Row>& rows) {
  for (const Row& row : rows)
    EXPECT_EQ(Client(row.before).Read({row.line}), row.expected) << row.line;
}

}  // namespace

TEST(CutLines, EndsALineAtEachKindOfEndAndDropsEmptyOnes) {
  EXPECT_THAT(CutLines("a\r\nb\nc\rd\n\n\r\re f"), ElementsAre("a", "b", "c", "d", "e f"));
  EXPECT_THAT(CutLines("\r\n\r\n\n"), IsEmpty());
}

TEST(IrcParser, TakesPrefixesApart) {
  for (const auto& [word, parts] : std::vector<std::pair<std::string, Strings>>{
           {":a!b@c", {"a", "b", "c"}},
           {":irc.server.example", {"irc.server.example", "", ""}},
           {":a!b!c@d@e", {"a", "b", "d"}},
           {":a@h!b", {"a@h", "", "h!b"}},
           {"", {"", "", ""}},
           {"!", {"", "", ""}}}) {
    EXPECT_EQ(
        (Strings{IrcParser::UserNick(word), IrcParser::UserIdent(word), IrcParser::UserHost(word)}),
        parts)
        << word;
  }
}

TEST(IrcParser, TellsEveryLineOfFourWords) {
  Client client;
  client.recorder.notesData = true;
  for (const auto& [line, expected] : std::vector<std::pair<std::string, std::string>>{
           {":a!b@c PRIVMSG #x :Hi  you ", "|7|#x|Hi  you "},
           {":a!b@c PRIVMSG #x word", "|4|#x|ord"},
           {":a!b@c PRIVMSG #x :", "|4|#x|"},
           {":a!b@c PRIVMSG #x ", "|4|#x|"},
           {"NOTICE AUTH :x y", "|4|:x|"},
           {"   ", "|4||"},
       }) {
    EXPECT_THAT(client.Read({line}), ElementsAre("OnDataArrival(" + line + expected + ")"));
  }
  EXPECT_THAT(client.Read({":a!b@c PRIVMSG #x"}), IsEmpty());
  EXPECT_THAT(client.Read({"PING :a b c d"}),
              ElementsAre("OnDataArrival(PING :a b c d|5|b| d)", "> PONG :a"));
}

TEST(IrcParser, KnowsItsCommands) {
  const std::string user = ":Bob!b@h ";
  Check({
      {{}, "PING :abc", {"> PONG :abc"}},
      {{}, ":s 376 me :End", {"> USERHOST me", "OnReady()"}},
      {{}, ":s 422", {"> USERHOST me", "OnReady()"}},
      {{":s 302 me :me=+id@h"}, ":s 376 me :End", {"OnReady()"}},
      {{}, ":s 433 * me :used", {"OnNickInUse(me)"}},
      {{}, ":s 471 me #x :full", {"OnChanLimit(#x)"}},
      {{}, ":s 473 me #x :invite", {"OnChanInvite(#x)"}},
      {{}, ":s 474 me #x :banned", {"OnChanBanned(#x)"}},
      {{}, ":s 475 me #x :key", {"OnChanKey(#x)"}},
      {{}, user + "nick :Rob", {"OnNickChangeOther(Bob|Rob)"}},
      {{}, ":ME!id@h NICK :you", {"OnNickChange(ME|you)"}},
      {{}, ":me!id@h NICK", {"OnNickChange(me|me)"}},
      {{}, user + "PART #x :bye", {"OnPartOther(#x|Bob|b|h)"}},
      {{}, user + "JOIN #x:y", {"OnJoinOther(#xy|Bob|b|h)"}},
      {{}, ":me!id@h JOIN :#x", {"OnJoin(#x)"}},
      {{}, user + "KICK #x Tom :go  now", {"OnKickOther(#x|Tom|Bob|b|h|go  now)"}},
      {{}, ":me!id@h QUIT :so long", {"OnQuitOther(me|id|h|so long)"}},
      {{}, user + "TOPIC #x :new one", {"OnTopicChange(#x|new one|Bob|b|h)"}},
      {{}, user + "INVITE me :#x", {"OnGetInvite(Bob|b|h|#x)"}},
  });
  // What is too short, somebody else's or no command tells nothing.
  for (const char* const line :
       {"", "PING", "ping :abc", ":server PING :abc", ":s 433 *", ":s 001 me :Welcome", ":b NICK",
        ":b PART", ":b KICK #x Tom", ":b KICK #x", ":b QUIT", ":b TOPIC #x", ":b INVITE you :#x",
        ":b INVITE me"}) {
    EXPECT_THAT(Client().Read({line}), IsEmpty()) << line;
  }
}

TEST(IrcParser, WalksItsChannelsOncePerEntry) {
  const Strings joined = {":me!i@h JOIN #a", ":me!i@h JOIN #B"};
  Check({
      {{}, ":me!i@h PART #a", {}},
      {joined, ":me!i@h PART #b", {"OnPart(#b)", "OnPart(#b)"}},
      {joined, ":me!i@h PART", {}},
      {joined, ":op!o@h KICK #a ME :out", {"OnKick(#a|op|o|h|out)", "OnKick(#a|op|o|h|out)"}},
      {joined, ":op!o@h KICK #a me", {}},
  });
  Client client(joined);
  client.Read({":op!o@h KICK #b me :the case counts"});
  EXPECT_THAT(client.Channels(), ElementsAre("#a", "#B"));
  client.Read({":op!o@h KICK #a me"});
  EXPECT_THAT(client.Channels(), ElementsAre("#B"));
  client.Read({":me!i@h JOIN #a", ":me!i@h JOIN #a", ":me!i@h PART #A"});
  EXPECT_THAT(client.Channels(), ElementsAre("#B", "#a")) << "the walk steps over one";
}

TEST(IrcParser, SplitsFlags) {
  Client client;
  const auto split = [&](const char* flags, const char* nicks, const char* filter) {
    client.SplitFlags(flags, nicks, filter);
    return client.ModeItems();
  };
  EXPECT_THAT(split("+mv", "Tom", ""), ElementsAre("Tom +m", " +v"));
  EXPECT_THAT(split("+o-v+b", "a b c", ""), ElementsAre("a +o", "b -v", "c +b"));
  EXPECT_THAT(split("ov", "ME you", "me"), ElementsAre("+o", "you +v"));
  EXPECT_THAT(split("+-", "a", ""), IsEmpty());
}

TEST(IrcParser, ReadsModes) {
  const std::string mode = ":op!o@h MODE ";
  const auto done = [](const std::string& what) { return "OnMode(" + what + "|op|o|h)"; };
  const std::string by = "(#c|op|o|h)";
  Check({
      {{}, mode + "#c +ov me you", {"OnOp" + by, done("#c|+ov|me you")}},
      {{}, mode + "#c", {}},
      {{}, mode + "#c +mv me", {done("#c|+mv|me")}},
      {{}, mode + "#c :+i", {"OnSetInvite" + by, done("#c|+i|")}},
      {{},
       mode + "#c -v+o-o+v me me me ME",
       {"OnDeVoice" + by, "OnOp" + by, "OnDeOp" + by, "OnVoice" + by,
        done("#c|-v+o-o+v|me me me ME")}},
      {{},
       mode + "#c -i+m-m+s-s+p-p",
       {"OnRemoveInvite" + by, "OnSetModerated" + by, "OnRemoveModerated" + by, "OnSetSecret" + by,
        "OnRemoveSecret" + by, "OnSetPrivate" + by, "OnRemovePrivate" + by,
        done("#c|-i+m-m+s-s+p-p|")}},
      {{},
       mode + "#c +k-k key key",
       {"OnSetKey(#c|op|o|h|key)", "OnRemoveKey(#c|op|o|h|key)", done("#c|+k-k|key key")}},
      {{}, mode + "#c +o  x", {done("#c|+o| x")}},
      {{}, mode + "#c +xx", {"> who me", done("#c|+xx|")}},
      {{}, mode + "me +x", {done("me|+x|")}},
  });
  Client client({":me MODE me :+i"});
  EXPECT_EQ(client.Modes(), ":i") << "the colon counts as a letter";
  client.Read({":me MODE ME +wxi", ":me MODE me -i:"});
  EXPECT_EQ(client.Modes(), "wx");
}

TEST(IrcParser, LearnsItsHosts) {
  for (const auto& [line, host] :
       std::vector<std::pair<std::string, std::string>>{{":s 302 me :me=+~id@my.host ", "my.host"},
                                                        {":s 302 me :me=+a@b=+c@d", "b"},
                                                        {":s 302 me :me=-a@b", ""},
                                                        {":s 302", ""}}) {
    Client client({line});
    EXPECT_EQ(client.Host(), host) << line;
    EXPECT_THAT(client.Read({":s 302 me :me=+x@later", ":s 422"}), ElementsAre("OnReady()"));
    EXPECT_EQ(client.Host(), host) << "only the first reply counts";
  }

  const std::string who = ":s 352 me #c id hidden s me";
  Client client({":s 302 me :me=+id@h"});
  EXPECT_THAT(client.Read({who}), IsEmpty()) << "nobody asked";
  client.Read({":op MODE #c +x"});
  EXPECT_THAT(client.Read({":s 352 me", who, who}), ElementsAre("OnNewHost(h|hidden)"));
  client.Read({":op MODE #c -x"});
  EXPECT_EQ(client.VHost(), "");
}

TEST(IrcParser, TestsBansByPattern) {
  for (const auto& [mask, isMine] :
       std::vector<std::pair<std::string, bool>>{{"*!*@h#.net", true},
                                                 {"ME!?d@*", true},
                                                 {"[!x-z]e!id@h7.net", true},
                                                 {"[a-l]e!*", false},
                                                 {"*@veil", true},
                                                 {"*@h7", false},
                                                 {"*[", false}}) {
    Client client({":s 302 me :me=+id@h7.net", ":op MODE #c +x", ":s 352 me #c id veil s me"});
    const std::string end = (isMine ? "(#c|op|o|h|" : "Other(#c|op|o|h|") + mask + ")";
    const Strings log = client.Read({":op!o@h MODE #c +b-b " + mask + " " + mask});
    ASSERT_EQ(log.size(), 3U) << mask;
    EXPECT_EQ(log[0], "OnBan" + end);
    EXPECT_EQ(log[1], "OnUnBan" + end);
  }
  Check({
      // No host is known yet; the client's own nick is no mask.
      {{}, ":op!o@h MODE #c +b me!id@", {"OnBan(#c|op|o|h|me!id@)", "OnMode(#c|+b|me!id@|op|o|h)"}},
      {{}, ":op!o@h MODE #c +b me", {"OnMode(#c|+b|me|op|o|h)"}},
  });
}

TEST(IrcParser, GoesOnPastAHandlerThatFails) {
  struct Failing : IrcRecorder {
    void OnDataArrival(Text, const Strings&, Text, Text) override {
      throw std::runtime_error("handler");
    }
  };
  struct Deaf : IrcParser {
    using IrcParser::IrcParser;
    void SendData(const std::string& /*Data*/) override {}
    void SendLine(const std::string& /*line*/) override { throw std::runtime_error("socket"); }
  };
  Failing recorder;
  Deaf client(recorder);
  client.ProcessLine("PING :a b c");
  client.ProcessLine(":s 376 me :End of the message");
  EXPECT_THAT(recorder.log, ElementsAre("OnReady()"));
}

TEST(IrcParser, KeepsNoMoreThanAServerCouldMean) {
  Client client;
  for (int i = 0; i < 300; ++i) {
    const std::string me = client.NickName();
    client.Read({":" + me + " JOIN #" + std::string(1000, 'c'),
                 ":s MODE " + me + " +" + std::string(1000, 'w'),
                 ":" + me + " NICK " + std::string(1000, 'n')});
  }
  EXPECT_LE(client.NickName().size(), 512U);
  EXPECT_LE(client.Modes().size(), 256U);
  ASSERT_LE(client.Channels().size(), 256U);
  EXPECT_LE(client.Channels().back().size(), 512U);
}
