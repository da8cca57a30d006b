#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "desk/play/ScriptPlayer.h"
#include "desk/supervisor/Supervisor.h"
#include "tests/support/TemporaryDirectory.h"

namespace desk {
namespace {

/// Keeps the events, one line each.
struct EventNotes : Events {
  void onEvent(const Channel::Message& event) override { lines.push_back(event.dump()); }
  void onLogLine(const std::string& line) override { lines.push_back("log: " + line); }
  void onCommand(const std::string& command) override { lines.push_back("command: " + command); }
  std::vector<std::string> lines;
};

using Lines = std::vector<std::string>;

Channel::Message frame(const std::string& key, const std::string& title) {
  return {{"frame",
           {{"key", key},
            {"screen", "Menu"},
            {"title", title},
            {"widgets", Channel::Message::object()},
            {"rows", Channel::Message::array()},
            {"selected", 0}}}};
}

/// A GUI that answers every word with a frame of that title, but for some that it obeys.
[[noreturn]] void obedientGui(Channel channel) {
  channel.send(frame("", "opened"));
  while (const auto message = channel.receive()) {
    if (message->contains("show")) {
      channel.send({{"shown", frame("frame", "shown").at("frame")}});
      continue;
    }
    const std::string word = message->at("word");
    if (word == "red") raise(SIGKILL);
    if (word == "green") raise(SIGTERM);
    if (word == "yellow") _exit(3);
    if (word == "1") channel.send({{"log", "a line\nof two"}});
    if (word == "1") channel.send({{"command", "echo a\necho b"}});
    if (word == "2") channel.send({{"error", "OSError: gone"}});
    if (word == "3") channel.send({{"fatal", "cannot go on"}});
    if (word == "4") channel.send({{"changed", true}});
    if (word == "5") channel.send({{"idle", frame("wait", "idle").at("frame")}});
    if (word.starts_with("select:")) {
      channel.send({{"missing", word}});
    } else {
      channel.send(frame(word, word));
    }
  }
  _exit(0);
}

struct SupervisorTest : testing::Test {
  /// Presses the words and returns the titles shown, "nothing" for a row that is not there.
  Lines press(Supervisor& supervisor, const Lines& words) {
    Lines titles;
    for (const std::string& word : words) {
      const auto shown = supervisor.press(word);
      titles.push_back(shown ? shown->at("title").get<std::string>() : "nothing");
    }
    return titles;
  }

  /// Returns what `call` says when it fails.
  template <class Call>
  static std::string failure(const Call& call) {
    try {
      call();
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "no failure";
  }

  EventNotes events;
  const support::TemporaryDirectory directory;
};

TEST_F(SupervisorTest, EveryWordIsAnsweredByItsFrame) {
  Supervisor supervisor(obedientGui, {}, events);
  EXPECT_EQ(supervisor.firstFrame().at("title"), "opened");
  EXPECT_EQ(press(supervisor, {"up", "ok", "up"}), (Lines{"up", "ok", "up"}));
  EXPECT_EQ(events.lines, Lines{});
}

TEST_F(SupervisorTest, MissingRowIsAnsweredByNothingAndTheGuiGoesOn) {
  Supervisor supervisor(obedientGui, {}, events);
  supervisor.firstFrame();
  EXPECT_EQ(press(supervisor, {"select:x", "ok"}), (Lines{"nothing", "ok"}));
}

TEST_F(SupervisorTest, KilledGuiIsStartedAgainAndTheNextWordsGoToIt) {
  Supervisor supervisor(obedientGui, {}, events);
  supervisor.firstFrame();
  for (int round = 0; round < 3; ++round) {
    const auto shown = supervisor.press("red");
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->at("key"), "red");
    EXPECT_EQ(shown->at("title"), "opened");
    EXPECT_EQ(events.lines, (Lines{R"({"event":"gui-killed"})", R"({"event":"gui-started"})"}));
    EXPECT_EQ(press(supervisor, {"ok"}), Lines{"ok"});
    events.lines.clear();
  }
}

/// Receives until nothing is to be expected; returns what has come for the front end as
/// "KIND: KEY TITLE".
Lines receiveAll(Supervisor& supervisor, std::size_t count) {
  Lines received;
  while (received.size() < count) {
    const auto message = supervisor.receive();
    if (!message) continue;
    const auto content = message->begin();
    std::string line = content.key() + ":";
    if (content->is_object()) {
      line += " " + content->at("key").get<std::string>() + " " +
              content->at("title").get<std::string>();
    }
    received.push_back(line);
  }
  return received;
}

TEST_F(SupervisorTest, FrontEndWithALoopOfItsOwnSendsAheadAndReceivesTheAnswersInOrder) {
  Supervisor supervisor(obedientGui, {}, events);
  EXPECT_EQ(supervisor.unanswered(), 1U);
  for (const char* word : {"up", "select:x", "ok"}) supervisor.send(word);
  EXPECT_EQ(supervisor.unanswered(), 4U);
  EXPECT_EQ(receiveAll(supervisor, 4),
            (Lines{"frame:  opened", "frame: up up", "missing:", "frame: ok ok"}));
  EXPECT_EQ(supervisor.unanswered(), 0U);
}

TEST_F(SupervisorTest, WhatChangesWithoutAWordIsToldAndShownOnRequest) {
  Supervisor supervisor(obedientGui, {}, events);
  supervisor.firstFrame();
  supervisor.send("4");
  supervisor.send("5");
  supervisor.show();
  EXPECT_EQ(receiveAll(supervisor, 5), (Lines{"changed:", "frame: 4 4", "idle: wait idle",
                                              "frame: 5 5", "shown: frame shown"}));
}

TEST_F(SupervisorTest, RowsThatAFrameLeavesOutAreThoseOfTheFrameBefore) {
  const Channel::Message two_rows = {{"one", ""}, {"two", ""}};
  Supervisor supervisor(
      [&](Channel channel) {
        const auto send = [&](const char* kind, const Channel::Message& rows) {
          Channel::Message message = frame("", "");
          message["frame"]["rows"] = rows;
          channel.send({{kind, message["frame"]}});
        };
        send("frame", two_rows);
        send("shown", nullptr);
        send("idle", Channel::Message::array());
        channel.receive();
        send("frame", nullptr);
        channel.receive();
        _exit(0);
      },
      {}, events);
  EXPECT_EQ(supervisor.firstFrame().at("rows"), two_rows);
  EXPECT_EQ(supervisor.receive()->at("shown").at("rows"), two_rows);
  EXPECT_EQ(supervisor.press("ok")->at("rows"), Channel::Message::array());
}

TEST_F(SupervisorTest, WordsThatAKilledGuiHasNotAnsweredAreLost) {
  Supervisor supervisor(obedientGui, {}, events);
  supervisor.firstFrame();
  for (const char* word : {"up", "red", "ok", "exit"}) supervisor.send(word);
  EXPECT_EQ(receiveAll(supervisor, 2), (Lines{"frame: up up", "frame: red opened"}));
  EXPECT_EQ(supervisor.unanswered(), 0U);
  EXPECT_EQ(press(supervisor, {"down"}), Lines{"down"});
}

TEST_F(SupervisorTest, GuiThatAJobKillsComesBackAsAfterWaitingForIt) {
  Supervisor supervisor(
      [](Channel channel) {
        channel.send(frame("", "opened"));
        raise(SIGKILL);
      },
      {}, events);
  supervisor.firstFrame();
  EXPECT_EQ(receiveAll(supervisor, 1), Lines{"frame: wait opened"});
}

TEST_F(SupervisorTest, ScriptIsNotDisturbedByWhatChangesWithoutAWord) {
  Supervisor supervisor(obedientGui, {}, events);
  supervisor.firstFrame();
  EXPECT_EQ(press(supervisor, {"4", "5", "ok"}), (Lines{"4", "5", "ok"}));
}

TEST_F(SupervisorTest, KilledOnPurposeTheGuiIsNotStartedAgain) {
  Supervisor supervisor(
      [](Channel channel) {
        channel.send(frame("", "opened"));
        pollfd supervisor = {.fd = channel.descriptor(), .events = 0, .revents = 0};
        poll(&supervisor, 1, -1);
        _exit(0);
      },
      {}, events);
  supervisor.firstFrame();
  supervisor.kill();
  supervisor.kill();
  EXPECT_EQ(events.lines, Lines{});
}

TEST_F(SupervisorTest, CrashedGuiIsAnErrorNotARestart) {
  Supervisor supervisor(obedientGui, {}, events);
  supervisor.firstFrame();
  EXPECT_EQ(failure([&] { supervisor.press("green"); }), "the GUI has crashed: Terminated");
  EXPECT_EQ(events.lines, Lines{});
}

TEST_F(SupervisorTest, GuiThatEndsByItselfIsAnError) {
  Supervisor supervisor(obedientGui, {}, events);
  supervisor.firstFrame();
  EXPECT_EQ(failure([&] { supervisor.press("yellow"); }), "the GUI has ended with status 3");
}

TEST_F(SupervisorTest, GuiThatIsKilledBeforeItsFirstFrameIsAnError) {
  Supervisor supervisor([](Channel) { raise(SIGKILL); }, {}, events);
  EXPECT_EQ(failure([&] { supervisor.firstFrame(); }),
            "the GUI was killed before it had opened its menu");
}

TEST_F(SupervisorTest, FatalMessageIsTheError) {
  Supervisor at_start(
      [](Channel channel) {
        channel.send({{"fatal", "cannot move in"}});
        _exit(1);
      },
      {}, events);
  EXPECT_EQ(failure([&] { at_start.firstFrame(); }), "cannot move in");
  Supervisor later(obedientGui, {}, events);
  later.firstFrame();
  EXPECT_EQ(failure([&] { later.press("3"); }), "cannot go on");
}

TEST_F(SupervisorTest, ErrorIsAnEventBeforeTheFrameAndALineInTheLog) {
  Supervisor supervisor(obedientGui, {.log = directory / "log", .trace = {}}, events);
  supervisor.firstFrame();
  EXPECT_EQ(press(supervisor, {"2"}), Lines{"2"});
  EXPECT_EQ(events.lines, Lines{R"({"event":"error","text":"OSError: gone"})"});
  EXPECT_EQ(directory.read("log"), "error: OSError: gone\n");
}

TEST_F(SupervisorTest, RecordsAreAppendedOneLineEachWithNewlinesEscaped) {
  directory.write("log", "before\n");
  for (int run = 0; run < 2; ++run) {
    Supervisor supervisor(obedientGui, {directory / "log", directory / "trace"}, events);
    supervisor.firstFrame();
    press(supervisor, {"1"});
  }
  EXPECT_EQ(events.lines, (Lines{"log: a line\nof two", "command: echo a\necho b",
                                 "log: a line\nof two", "command: echo a\necho b"}));
  EXPECT_EQ(directory.read("log"), "before\na line\\nof two\na line\\nof two\n");
  EXPECT_EQ(directory.read("trace"), "echo a\\necho b\necho a\\necho b\n");
}

TEST_F(SupervisorTest, RecordThatCannotBeWrittenIsRefusedBeforeAGuiIsStarted) {
  const auto write_marker = [this](Channel) {
    directory.write("started", "");
    _exit(0);
  };
  const std::string path = directory / "no/such/log";
  EXPECT_EQ(failure([&] { Supervisor(write_marker, {.log = path, .trace = {}}, events); }),
            "cannot write " + path + ": No such file or directory");
  EXPECT_NE(access((directory / "started").c_str(), F_OK), 0);
}

TEST_F(SupervisorTest, GuiEndsWithItsSupervisor) {
  {
    Supervisor supervisor(
        [this](Channel channel) {
          channel.send(frame("", "opened"));
          channel.receive();
          directory.write("ended", "");
          _exit(0);
        },
        {}, events);
    supervisor.firstFrame();
  }
  EXPECT_EQ(directory.read("ended"), "");
}

TEST_F(SupervisorTest, ScriptPlayerPrintsAFrameForTheOpeningAndForEveryWord) {
  std::ostringstream output;
  ScriptPlayer player(FrameFormat::json, output);
  Supervisor supervisor(obedientGui, {}, player);
  player.play(supervisor, {"2", "red"});
  EXPECT_EQ(output.str(), frame("", "opened").at("frame").dump() + "\n" +
                              R"({"event":"error","text":"OSError: gone"})" + "\n" +
                              frame("2", "2").at("frame").dump() + "\n" +
                              R"({"event":"gui-killed"})" + "\n" + R"({"event":"gui-started"})" +
                              "\n" + frame("red", "opened").at("frame").dump() + "\n");
}

TEST_F(SupervisorTest, ScriptPlayerPrintsTextAndStopsAtAMissingRow) {
  std::ostringstream output;
  ScriptPlayer player(FrameFormat::text, output);
  Supervisor supervisor(obedientGui, {}, player);
  EXPECT_EQ(failure([&] {
              player.play(supervisor, {"2", "select:x", "ok"});
            }),
            "select:x: the shown screen has no such row");
  EXPECT_EQ(output.str().find("[ok]"), std::string::npos);
  EXPECT_NE(output.str().find("\n*** error: OSError: gone\n"), std::string::npos);
  EXPECT_NE(output.str().find("\n[2]\n+-- 2 "), std::string::npos);
}

}  // namespace
}  // namespace desk
