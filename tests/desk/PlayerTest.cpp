#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "desk/frontend/Player.h"
#include "desk/protocol/Json.h"
#include "desk/script/ScriptFrontEnd.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TemporaryDirectory.h"

namespace desk {
namespace {

using Cause = FrameReport::Cause;

Frame menu(const std::string& text) {
  return {.word = word(text),
          .layers = {LayerView{.id = 1, .screen = "Menu", .title = "Title " + text}}};
}

/// A GUI that answers every word with its menu: "exit" closes that, "red" kills the GUI, "green" is
/// an error, "blue" changes something later; no row is there.
[[noreturn]] void answeringGui(Channel channel) {
  ReportWriter writer;
  const auto send = [&](const Report& report) { channel.send(writer.jsonOf(report)); };
  send(FrameReport{Cause::word, menu("")});
  while (const auto line = channel.receive()) {
    const Request request = parseRequest(*line);
    if (!request.word) {
      send(FrameReport{Cause::request, menu("frame")});
      continue;
    }
    const std::string& word = request.word->text;
    if (word == "red") raise(SIGKILL);
    if (word == "green") send(UncaughtError{"OSError: gone"});
    if (word == "blue") send(FrameReport{Cause::idle, menu("wait")});
    if (word == "blue") send(Changed());
    if (request.word->kind == Word::Kind::select) {
      send(RowMissing());
    } else {
      send(FrameReport{Cause::word, word == "exit" ? Frame{.word = *request.word} : menu(word)});
    }
  }
  _exit(0);
}

/// A GUI whose menu fails to open.
[[noreturn]] void failingGui(Channel channel) {
  ReportWriter writer;
  channel.send(writer.jsonOf(UncaughtError{"KeyError: x"}));
  channel.send(writer.jsonOf(FrameReport{Cause::word, Frame()}));
  channel.receive();
  _exit(0);
}

using Gui = std::function<void(Channel)>;

int play(FrontEnd& front_end, const Gui& gui = answeringGui, Signals* signals = nullptr) {
  Player player(front_end, signals);
  Supervisor supervisor(gui, {}, player);
  return player.play(supervisor);
}

/// Returns what the script's front end prints.
std::string printed(FrameFormat format, const std::string& words, const Gui& gui = answeringGui) {
  std::ostringstream output;
  ScriptFrontEnd front_end(format, parseWords(words), output);
  try {
    play(front_end, gui);
  } catch (const std::runtime_error& error) {
    output << "failed: " << error.what() << "\n";
  }
  return output.str();
}

std::string line(const Frame& frame) {
  return jsonOf(frame) + "\n";
}

TEST(Player, ScriptGetsAFrameForTheOpeningAndForEveryWordUntilTheWordsRunOut) {
  EXPECT_EQ(printed(FrameFormat::json, ""), line(menu("")));
  const Word exit{Word::Kind::key, "exit"};
  EXPECT_EQ(printed(FrameFormat::json, "green red blue exit left"),
            line(menu("")) + R"({"event":"error","text":"OSError: gone"})" + "\n" +
                line(menu("green")) + R"({"event":"gui-killed"})" + "\n" +
                R"({"event":"gui-started"})" + "\n" +
                line({.word = {Word::Kind::key, "red"}, .layers = menu("").layers}) +
                line(menu("blue")) + line({.word = exit}) + line(menu("left")));
}

TEST(Player, ScriptEndsAtARowThatIsNotThere) {
  EXPECT_EQ(printed(FrameFormat::json, "select:x ok"),
            line(menu("")) + "failed: select:x: the shown screen has no such row\n");
}

TEST(Player, ScriptIsShownAMenuThatDoesNotOpen) {
  EXPECT_EQ(printed(FrameFormat::json, "", failingGui), R"({"event":"error","text":"KeyError: x"})"
                                                        "\n" +
                                                            line({}));
}

TEST(Player, TextIsThePictureOfATerminalWithoutItsEmptyLines) {
  setenv("LC_ALL", "C.UTF-8", 1);
  EXPECT_EQ(printed(FrameFormat::text, "green exit"), R"(
┌─ Title  ─────────────────────────────────────────────────────────────────────┐
│                                                                              │
└─────────────────────────────────────────────────────────────── nothing here ─┘

*** error: OSError: gone

[green]
┌─ Title green ────────────────────────────────────────────────────────────────┐
│                                                                              │
└─────────────────────────────────────────────────────────────── nothing here ─┘

[exit]
(the menu is closed)
)");
}

/// Presses words for somebody who watches, and takes note of what is shown.
struct Viewer : FrontEnd {
  explicit Viewer(const std::string& script) : words(parseWords(script)) {}

  void show(const Frame& frame, bool is_answer) override {
    notes.push_back((is_answer ? "answer " : "meanwhile ") + frame.word.text);
  }
  std::optional<Word> nextWord() override {
    if (next == words.size()) return std::nullopt;
    return words[next++];
  }
  void refresh(const Moment& moment) override {
    const std::string left = moment.seconds_left ? std::to_string(*moment.seconds_left) + " s" : "";
    const std::string state = left + (moment.busy_since ? " busy" : "");
    if (states.empty() || states.back() != state) states.push_back(state);
  }
  void onEvent(const Event& event) override { notes.push_back(jsonOf(event)); }
  void onLogLine(const std::string& line) override { notes.push_back(line); }
  void onCommand(const std::string& /*command*/) override {}

  std::vector<Word> words;
  std::size_t next = 0;
  std::vector<std::string> notes;
  std::vector<std::string> states;  ///< the seconds left, and whether the GUI is busy
};

using Texts = std::vector<std::string>;

TEST(Player, ViewerSeesWhatChangesMeanwhileAndTheEndIsThatOfTheMenu) {
  Viewer viewer("select:x blue exit left");
  EXPECT_EQ(play(viewer), 0);
  EXPECT_EQ(viewer.notes, (Texts{"answer ", "answer wait", "answer blue", "answer exit"}));
  EXPECT_EQ(viewer.next, 3U);
}

TEST(Player, MenuThatDoesNotOpenForAViewerIsAnErrorWithItsReason) {
  Viewer viewer("");
  try {
    play(viewer, failingGui);
    ADD_FAILURE() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "the menu does not open: KeyError: x");
  }
}

/// A GUI that shows a box for a second, and is closed by whatever comes.
[[noreturn]] void boxGui(Channel channel) {
  ReportWriter writer;
  const LayerView box = {.id = 1, .content = MessageContent{.timeout = 1}};
  channel.send(writer.jsonOf(FrameReport{Cause::word, {.layers = {box}}}));
  const Request request = parseRequest(channel.receive().value());
  channel.send(writer.jsonOf(FrameReport{Cause::word, {.word = request.word.value()}}));
  channel.receive();
  _exit(0);
}

TEST(Player, BoxCountsDownAndIsEndedByItsTimeOut) {
  Viewer viewer("");
  EXPECT_EQ(play(viewer, boxGui), 0);
  EXPECT_EQ(viewer.notes, (Texts{"answer ", "answer timeout"}));
  EXPECT_EQ(viewer.states, (Texts{"1 s", "0 s"}));
}

/// A GUI that takes its time for each word, and says so when another has come meanwhile.
[[noreturn]] void slowGui(Channel channel) {
  ReportWriter writer;
  channel.send(writer.jsonOf(FrameReport{Cause::word, menu("")}));
  while (const auto line = channel.receive()) {
    const Word word = parseRequest(*line).word.value();
    usleep(600000);
    pollfd socket = {.fd = channel.descriptor(), .events = POLLIN, .revents = 0};
    if (poll(&socket, 1, 0) > 0) channel.send(writer.jsonOf(LogLine{"another word"}));
    const bool closes = word.text == "exit";
    channel.send(
        writer.jsonOf(FrameReport{Cause::word, closes ? Frame{.word = word} : menu("ok")}));
  }
  _exit(0);
}

TEST(Player, WordsAreHandedOverOneAtATimeAndMeanwhileTheGuiIsBusy) {
  Viewer viewer("ok exit");
  EXPECT_EQ(play(viewer, slowGui), 0);
  EXPECT_EQ(viewer.notes, (Texts{"answer ", "answer ok", "answer exit"}));
  EXPECT_EQ(std::set(viewer.states.begin(), viewer.states.end()),
            (std::set<std::string>{"", " busy"}));
}

TEST(Player, MenuThatDoesNotOpenAgainAfterAKillIsAnErrorWithoutAnOldReason) {
  const support::TemporaryDirectory directory;
  Viewer viewer("green red");
  try {
    play(viewer, [&directory](Channel channel) {
      const std::string mark = directory / "started";
      if (access(mark.c_str(), F_OK) != 0) {
        directory.write("started", "");
        answeringGui(std::move(channel));
      }
      channel.send(ReportWriter().jsonOf(FrameReport{Cause::word, Frame()}));
      channel.receive();
      _exit(0);
    });
    ADD_FAILURE() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "the menu does not open: ");
  }
}

/// Asks the process to end as soon as it is shown anything.
struct Interrupted : Viewer {
  explicit Interrupted(int signal) : Viewer(""), signal_(signal) {}
  void show(const Frame& frame, bool is_answer) override {
    Viewer::show(frame, is_answer);
    raise(signal_);
  }

 private:
  int signal_;
};

TEST(Player, SignalEndsIt) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    Signals signals;
    Interrupted viewer(signal);
    EXPECT_EQ(play(viewer, answeringGui, &signals), signal);
  }
}

TEST(Player, SignalThatIsIgnoredStaysIgnored) {
  std::signal(SIGHUP, SIG_IGN);
  {
    Signals signals;
    raise(SIGHUP);
    Viewer viewer("exit");
    EXPECT_EQ(play(viewer, answeringGui, &signals), 0);
  }
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

}  // namespace
}  // namespace desk
