#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "desk/supervisor/Supervisor.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TemporaryDirectory.h"

namespace desk {
namespace {

/// Keeps what the listener is told, one line each.
struct EventNotes : EventListener {
  void onEvent(const Event& event) override { lines.push_back(jsonOf(event)); }
  void onLogLine(const std::string& line) override { lines.push_back("log: " + line); }
  void onCommand(const std::string& command) override { lines.push_back("command: " + command); }
  std::vector<std::string> lines;
};

using Lines = std::vector<std::string>;
using Cause = FrameReport::Cause;

FrameReport frame(const std::string& key, const std::string& title, Cause cause = Cause::word) {
  return {cause, {.word = word(key), .layers = {LayerView{.screen = "Menu", .title = title}}}};
}

/// The GUI's end of a channel.
struct GuiEnd {
  explicit GuiEnd(Channel socket) : channel(std::move(socket)) {}

  void send(const Report& report) { channel.send(writer.jsonOf(report)); }

  Channel channel;
  ReportWriter writer;
};

/// A GUI that answers every word with a frame of that title, but for some that it obeys.
[[noreturn]] void obedientGui(Channel channel) {
  GuiEnd gui(std::move(channel));
  gui.send(frame("", "opened"));
  while (const auto line = gui.channel.receive()) {
    const Request request = parseRequest(*line);
    if (!request.word) {
      gui.send(frame("frame", "shown", Cause::request));
      continue;
    }
    const std::string& word = request.word->text;
    if (word == "red") raise(SIGKILL);
    if (word == "green") raise(SIGTERM);
    if (word == "yellow") _exit(3);
    if (word == "1") gui.send(LogLine{"a line\nof two"});
    if (word == "1") gui.send(CommandStart{"echo a\necho b"});
    if (word == "2") gui.send(UncaughtError{"OSError: gone"});
    if (word == "3") gui.send(Fatal{"cannot go on"});
    if (word == "4") gui.send(Changed());
    if (word == "5") gui.send(frame("wait", "idle", Cause::idle));
    if (word == "6") gui.channel.send(R"({"version":1,"picture":true})");
    if (request.word->kind == Word::Kind::select) {
      gui.send(RowMissing());
    } else {
      gui.send(frame(word, word));
    }
  }
  _exit(0);
}

/// Receives the next report for the front end.
Report receive(Supervisor& supervisor) {
  for (;;) {
    if (const auto report = supervisor.receive()) return *report;
  }
}

/// Receives the answer to a word: its frame, nothing for a row that is not there.
std::optional<Frame> receiveAnswer(Supervisor& supervisor) {
  for (;;) {
    const Report report = receive(supervisor);
    if (std::holds_alternative<RowMissing>(report)) return std::nullopt;
    const auto* const shown = std::get_if<FrameReport>(&report);
    if (shown && shown->cause == Cause::word) return shown->frame;
  }
}

struct SupervisorTest : testing::Test {
  /// Presses the words and returns the titles shown, "nothing" for a row that is not there.
  Lines press(Supervisor& supervisor, const Lines& words) {
    Lines titles;
    for (const std::string& text : words) {
      supervisor.send(word(text));
      const auto shown = receiveAnswer(supervisor);
      titles.push_back(shown ? shown->top()->title : "nothing");
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
  EXPECT_EQ(receiveAnswer(supervisor), frame("", "opened").frame);
  EXPECT_EQ(press(supervisor, {"up", "ok", "up"}), (Lines{"up", "ok", "up"}));
  EXPECT_EQ(events.lines, Lines{});
}

TEST_F(SupervisorTest, MissingRowIsAnsweredByNothingAndTheGuiGoesOn) {
  Supervisor supervisor(obedientGui, {}, events);
  receiveAnswer(supervisor);
  EXPECT_EQ(press(supervisor, {"select:x", "ok"}), (Lines{"nothing", "ok"}));
}

TEST_F(SupervisorTest, KilledGuiIsStartedAgainAndTheNextWordsGoToIt) {
  Supervisor supervisor(obedientGui, {}, events);
  receiveAnswer(supervisor);
  for (int round = 0; round < 3; ++round) {
    supervisor.send(word("red"));
    EXPECT_EQ(receiveAnswer(supervisor), frame("red", "opened").frame);
    EXPECT_EQ(events.lines, (Lines{R"({"event":"gui-killed"})", R"({"event":"gui-started"})"}));
    EXPECT_EQ(press(supervisor, {"ok"}), Lines{"ok"});
    events.lines.clear();
  }
}

/// Receives so many reports; returns each as "CAUSE: WORD TITLE", "missing" or "changed".
Lines receiveAll(Supervisor& supervisor, std::size_t count) {
  constexpr const char* kCauses[] = {"word: ", "request: ", "idle: "};
  Lines received;
  while (received.size() < count) {
    const Report report = receive(supervisor);
    if (const auto* const shown = std::get_if<FrameReport>(&report)) {
      received.push_back(kCauses[static_cast<int>(shown->cause)] + shown->frame.word.text + " " +
                         shown->frame.top()->title);
    } else {
      received.emplace_back(std::holds_alternative<RowMissing>(report) ? "missing" : "changed");
    }
  }
  return received;
}

TEST_F(SupervisorTest, FrontEndWithALoopOfItsOwnSendsAheadAndReceivesTheAnswersInOrder) {
  Supervisor supervisor(obedientGui, {}, events);
  EXPECT_EQ(supervisor.unanswered(), 1U);
  for (const char* text : {"up", "select:x", "ok"}) supervisor.send(word(text));
  EXPECT_EQ(supervisor.unanswered(), 4U);
  EXPECT_EQ(receiveAll(supervisor, 4),
            (Lines{"word:  opened", "word: up up", "missing", "word: ok ok"}));
  EXPECT_EQ(supervisor.unanswered(), 0U);
}

TEST_F(SupervisorTest, WhatChangesWithoutAWordIsToldAndShownOnRequest) {
  Supervisor supervisor(obedientGui, {}, events);
  receiveAnswer(supervisor);
  supervisor.send(word("4"));
  supervisor.send(word("5"));
  supervisor.requestFrame();
  EXPECT_EQ(receiveAll(supervisor, 5), (Lines{"changed", "word: 4 4", "idle: wait idle",
                                              "word: 5 5", "request: frame shown"}));
}

TEST_F(SupervisorTest, WordsThatAKilledGuiHasNotAnsweredAreLost) {
  Supervisor supervisor(obedientGui, {}, events);
  receiveAnswer(supervisor);
  for (const char* text : {"up", "red", "ok", "exit"}) supervisor.send(word(text));
  EXPECT_EQ(receiveAll(supervisor, 2), (Lines{"word: up up", "word: red opened"}));
  EXPECT_EQ(supervisor.unanswered(), 0U);
  EXPECT_EQ(press(supervisor, {"down"}), Lines{"down"});
}

TEST_F(SupervisorTest, GuiThatAJobKillsComesBackAsAfterWaitingForIt) {
  Supervisor supervisor(
      [](Channel channel) {
        GuiEnd gui(std::move(channel));
        gui.send(frame("", "opened"));
        raise(SIGKILL);
      },
      {}, events);
  receiveAnswer(supervisor);
  EXPECT_EQ(receiveAll(supervisor, 1), Lines{"word: wait opened"});
}

TEST_F(SupervisorTest, KilledOnPurposeTheGuiIsNotStartedAgain) {
  Supervisor supervisor(
      [](Channel channel) {
        GuiEnd gui(std::move(channel));
        gui.send(frame("", "opened"));
        pollfd supervisor = {.fd = gui.channel.descriptor(), .events = 0, .revents = 0};
        poll(&supervisor, 1, -1);
        _exit(0);
      },
      {}, events);
  receiveAnswer(supervisor);
  supervisor.kill();
  supervisor.kill();
  EXPECT_EQ(events.lines, Lines{});
}

TEST_F(SupervisorTest, CrashedGuiIsAnErrorNotARestart) {
  Supervisor supervisor(obedientGui, {}, events);
  receiveAnswer(supervisor);
  EXPECT_EQ(failure([&] { press(supervisor, {"green"}); }), "the GUI has crashed: Terminated");
  EXPECT_EQ(events.lines, Lines{});
}

TEST_F(SupervisorTest, GuiThatEndsByItselfIsAnError) {
  Supervisor supervisor(obedientGui, {}, events);
  receiveAnswer(supervisor);
  EXPECT_EQ(failure([&] { press(supervisor, {"yellow"}); }), "the GUI has ended with status 3");
}

TEST_F(SupervisorTest, GuiThatIsKilledBeforeItsFirstFrameIsAnError) {
  Supervisor supervisor([](Channel) { raise(SIGKILL); }, {}, events);
  EXPECT_EQ(failure([&] { receiveAnswer(supervisor); }),
            "the GUI was killed before it had opened its menu");
}

TEST_F(SupervisorTest, FatalMessageIsTheError) {
  Supervisor at_start(
      [](Channel channel) {
        GuiEnd(std::move(channel)).send(Fatal{"cannot move in"});
        _exit(1);
      },
      {}, events);
  EXPECT_EQ(failure([&] { receiveAnswer(at_start); }), "cannot move in");
  Supervisor later(obedientGui, {}, events);
  receiveAnswer(later);
  EXPECT_EQ(failure([&] { press(later, {"3"}); }), "cannot go on");
}

TEST_F(SupervisorTest, ErrorIsAnEventBeforeTheFrameAndALineInTheLog) {
  Supervisor supervisor(obedientGui, {.log = directory / "log", .trace = {}}, events);
  receiveAnswer(supervisor);
  EXPECT_EQ(press(supervisor, {"2"}), Lines{"2"});
  EXPECT_EQ(events.lines, Lines{R"({"event":"error","text":"OSError: gone"})"});
  EXPECT_EQ(directory.read("log"), "error: OSError: gone\n");
}

TEST_F(SupervisorTest, RecordsAreAppendedOneLineEachWithNewlinesEscaped) {
  directory.write("log", "before\n");
  for (int run = 0; run < 2; ++run) {
    Supervisor supervisor(obedientGui, {directory / "log", directory / "trace"}, events);
    receiveAnswer(supervisor);
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
          GuiEnd gui(std::move(channel));
          gui.send(frame("", "opened"));
          gui.channel.receive();
          directory.write("ended", "");
          _exit(0);
        },
        {}, events);
    receiveAnswer(supervisor);
  }
  EXPECT_EQ(directory.read("ended"), "");
}

TEST_F(SupervisorTest, GuiThatIsStillSendingEndsToo) {
  Supervisor supervisor(
      [](Channel channel) {
        GuiEnd gui(std::move(channel));
        gui.send(frame("", "opened"));
        for (int line = 0; line < 100; ++line) gui.send(LogLine{std::string(100000, 'x')});
        gui.channel.receive();
        _exit(0);
      },
      {}, events);
  receiveAnswer(supervisor);
}

TEST_F(SupervisorTest, ReportThatIsNotUnderstoodIsAnErrorThatNamesIt) {
  Supervisor supervisor(obedientGui, {}, events);
  receiveAnswer(supervisor);
  EXPECT_EQ(failure([&] { press(supervisor, {"6"}); }), "not understood: 'picture'");
}

}  // namespace
}  // namespace desk
