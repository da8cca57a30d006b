#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "desk/protocol/Json.h"

namespace desk {
namespace {

SharedRows shared(Rows rows) {
  return std::make_shared<const Rows>(std::move(rows));
}

/// A layer of each kind, with everything that it may hold.
const std::vector<LayerView> kLayers = {
    {.id = 1,
     .screen = "Menu",
     .title = "Title",
     .rows = shared({{"one", "first", "/a.png"}, {"two", "", ""}}),
     .selected = 1,
     .content = ScreenContent{.texts = {{"key_red", "Exit"}, {"status", "a\n\"b\""}},
                              .list = "menu",
                              .skin = "<screen/>"}},
    {.id = 2,
     .screen = "MessageBox",
     .rows = shared({{"yes"}, {"no"}}),
     .content =
         MessageContent{.type = MessageContent::Type::yesno, .text = "Sure?", .timeout = 10}},
    {.id = 3, .screen = "ChoiceBox", .content = ChoiceContent{"Which?"}},
    {.id = 4,
     .screen = "Console",
     .title = "Running",
     .content = ConsoleContent{.output = "caf\xc3\xa9\n", .dropped = 7, .is_running = true}},
    {.id = 5,
     .screen = "Ipkg",
     .content = PackagesContent{.packages = {{"a", Package::State::waiting},
                                             {"b", Package::State::running},
                                             {"c", Package::State::done},
                                             {"d", Package::State::failed}},
                                .is_running = true}},
};

std::string lineOf(const LayerView& layer) {
  return jsonOf(Frame{.word = {Word::Kind::key, "ok"}, .layers = {LayerView{}, layer}});
}

TEST(Json, FrameIsALineOfWhatIsOnTop) {
  EXPECT_EQ(jsonOf(Frame()), R"({"key":"","screen":"","title":"","widgets":{},"rows":[],)"
                             R"("selected":0})");
  EXPECT_EQ(lineOf(kLayers[0]),
            R"({"key":"ok","screen":"Menu","title":"Title",)"
            R"("widgets":{"key_red":"Exit","status":"a\n\"b\""},)"
            R"("rows":[["one","first"],["two",""]],"selected":1,"pictures":["/a.png",""],)"
            R"("list":"menu","skin":"<screen/>"})");
  EXPECT_EQ(lineOf(kLayers[1]), R"({"key":"ok","screen":"MessageBox","title":"","widgets":{},)"
                                R"("rows":[["yes",""],["no",""]],"selected":0,)"
                                R"("type":"yesno","text":"Sure?","timeout":10})");
  EXPECT_EQ(lineOf(kLayers[2]), R"({"key":"ok","screen":"ChoiceBox","title":"","widgets":{},)"
                                R"("rows":[],"selected":0,"text":"Which?"})");
  EXPECT_EQ(lineOf(kLayers[3]), R"({"key":"ok","screen":"Console","title":"Running","widgets":{},)"
                                R"("rows":[],"selected":0,"text":"café\n","running":true})");
  EXPECT_EQ(lineOf(kLayers[4]),
            R"({"key":"ok","screen":"Ipkg","title":"","widgets":{},"rows":[],"selected":0,)"
            R"("packages":[{"name":"a","state":"waiting"},{"name":"b","state":"running"},)"
            R"({"name":"c","state":"done"},{"name":"d","state":"failed"}],"running":true})");
}

TEST(Json, EventIsALine) {
  EXPECT_EQ(jsonOf(Event{Event::Kind::gui_killed}), R"({"event":"gui-killed"})");
  EXPECT_EQ(jsonOf(Event{Event::Kind::gui_started}), R"({"event":"gui-started"})");
  EXPECT_EQ(jsonOf(Event{Event::Kind::error, "OSError: gone"}),
            R"({"event":"error","text":"OSError: gone"})");
}

TEST(Json, RequestsAreReadAsTheyWereWritten) {
  for (const char* text : {"ok", "row:3", "select:caf\xc3\xa9 \"x\"", "wait"}) {
    EXPECT_EQ(parseRequest(jsonOf(Request{parseWord(text)})).word, parseWord(text));
  }
  EXPECT_EQ(parseRequest(jsonOf(Request())).word, std::nullopt);
}

/// Both ends of a channel.
struct Wire {
  /// Returns what the reader makes of a frame; `length` is that of the message, in bytes.
  Frame pass(const Frame& frame) {
    const std::string json = writer.jsonOf(FrameReport{FrameReport::Cause::word, frame});
    length = json.size();
    return std::get<FrameReport>(reader.parse(json)).frame;
  }

  ReportWriter writer;
  ReportReader reader;
  std::size_t length = 0;
};

TEST(Json, FramesAreReadAsTheyWereWritten) {
  Wire wire;
  std::vector<LayerView> layers;
  for (const LayerView& layer : kLayers) {
    layers.push_back(layer);
    const Frame frame = {.word = {Word::Kind::key, "ok"}, .layers = layers};
    EXPECT_EQ(wire.pass(frame), frame);
    EXPECT_EQ(wire.pass(frame), frame);
  }
  EXPECT_EQ(wire.pass({}), Frame());
}

TEST(Json, RowsCrossAgainOnlyWhenTheyHaveChanged) {
  Wire wire;
  const Rows many(10000, Row{"row", "description", ""});
  Frame frame = {.layers = {LayerView{.id = 1, .rows = shared(many)}}};
  EXPECT_EQ(wire.pass(frame), frame);
  frame.layers.push_back({.id = 2});
  frame.layers.front().selected = 9999;
  EXPECT_EQ(wire.pass(frame), frame);
  EXPECT_LT(wire.length, 300U);
  frame.layers.front().rows = shared({{"one"}});
  frame.layers.front().selected = 0;
  EXPECT_EQ(wire.pass(frame), frame);
  frame.layers.front() = {.id = 3, .rows = shared({})};
  EXPECT_EQ(wire.pass(frame), frame);
}

TEST(Json, OfAConsolesOutputWhatIsNewCrosses) {
  Wire wire;
  ConsoleContent console{.output = std::string(90000, 'a')};
  const auto passes = [&] {
    const Frame frame = {.layers = {LayerView{.id = 1, .content = console}}};
    return wire.pass(frame) == frame;
  };
  EXPECT_TRUE(passes());
  console.output += "more\n";
  EXPECT_TRUE(passes());
  EXPECT_LT(wire.length, 300U);
  console.output.erase(0, 50000);
  console.dropped = 50000;
  EXPECT_TRUE(passes());
  EXPECT_LT(wire.length, 300U);
  console = {.output = "far on", .dropped = 1000000};
  EXPECT_TRUE(passes());
}

TEST(Json, OtherReportsAreReadAsTheyWereWritten) {
  ReportWriter writer;
  ReportReader reader;
  const Report reports[] = {RowMissing(),           Changed(),
                            LogLine{"log"},         CommandStart{"command"},
                            UncaughtError{"error"}, Fatal{"fatal"}};
  for (const Report& report : reports) {
    const std::string json = writer.jsonOf(report);
    const Report read = reader.parse(json);
    EXPECT_EQ(read.index(), report.index());
    EXPECT_EQ(writer.jsonOf(read), json);
  }
}

TEST(Json, WhatIsNotUnderstoodIsNamed) {
  const struct {
    const char* json;
    const char* error;
  } reports[] = {
      {"nonsense", "no JSON: nonsense"},
      {"[]", "no object: []"},
      {R"({"changed":true})", "no 'version'"},
      {R"({"version":2,"changed":true})", "not understood: version 2"},
      {R"({"version":1.9,"changed":true})", "not understood: 'version': 1.9"},
      {R"({"version":true,"changed":true})", "not understood: 'version': true"},
      {R"({"version":1,"frame":{"word":"ok","layers":[{"id":-1}]}})", "not understood: 'id': -1"},
      {R"({"version":1,"changed":true,"more":1})", "not understood: 'more'"},
      {R"({"version":1,"log":1})", "not understood: 'log': 1"},
      {R"({"version":1,"frame":{"word":"jump","layers":[]}})", "not understood: 'jump'"},
      {R"({"version":1,"frame":{"word":"ok"}})", "no 'layers'"},
      {R"({"version":1,"frame":{"word":"ok","layers":[{"id":1,"screen":"","title":"",)"
       R"("selected":0,"rows":[],"kind":"teletext"}]}})",
       "not understood: 'teletext'"},
      {R"({"version":1,"frame":{"word":"ok","layers":[{"id":1,"screen":"","title":"",)"
       R"("selected":1,"rows":[],"kind":"choice","text":""}]}})",
       "no row 1"},
      {R"({"version":1,"frame":{"word":"ok","layers":[{"id":1,"screen":"","title":"",)"
       R"("selected":0,"kind":"choice","text":""}]}})",
       "no 'rows'"},
  };
  for (const auto& [json, error] : reports) {
    try {
      ReportReader().parse(json);
      ADD_FAILURE() << json;
    } catch (const ProtocolError& raised) {
      EXPECT_STREQ(raised.what(), error) << json;
    }
  }
}

}  // namespace
}  // namespace desk
