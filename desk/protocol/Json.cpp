#include "desk/protocol/Json.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <type_traits>
#include <utility>

#include "desk/protocol/Names.h"

namespace desk {
namespace {

using Json = nlohmann::ordered_json;

/// The causes of frames, as the names of their messages.
constexpr struct {
  FrameReport::Cause cause;
  const char* name;
} kCauses[] = {
    {FrameReport::Cause::word, "frame"},
    {FrameReport::Cause::request, "shown"},
    {FrameReport::Cause::idle, "idle"},
};

/// Returns the beginning of something that is not understood, for a line that says so.
std::string beginningOf(const std::string& text) {
  constexpr std::size_t kMost = 100;
  return text.substr(0, kMost);
}

/// Whether the value is of this type as it stands: the library would convert numbers.
template <class Value>
bool isOf(const Json& json) {
  if constexpr (std::is_same_v<Value, bool>) return json.is_boolean();
  if constexpr (std::is_unsigned_v<Value>) return json.is_number_unsigned();
  if constexpr (std::is_integral_v<Value>) return json.is_number_integer();
  return true;
}

/// The members of a JSON object, each to be taken once.
class Members {
 public:
  /// Raises ProtocolError unless `json` is an object.
  explicit Members(Json json) : json_(std::move(json)) {
    if (!json_.is_object()) throw ProtocolError("no object: " + beginningOf(json_.dump()));
  }

  bool has(const char* name) const { return json_.contains(name); }

  /// Raises ProtocolError when there is no such member, or none of this type.
  template <class Value>
  Value take(const char* name) {
    const auto found = json_.find(name);
    if (found == json_.end()) throw ProtocolError(std::string("no '") + name + "'");
    const Json member = std::move(*found);
    json_.erase(found);
    try {
      if (isOf<Value>(member)) return member.get<Value>();
    } catch (const Json::type_error&) {
      // One of its elements is of another type.
    }
    throw ProtocolError(std::string("not understood: '") + name +
                        "': " + beginningOf(member.dump()));
  }

  /// Raises ProtocolError when there is a member that was not taken.
  void requireAllTaken() const {
    if (!json_.empty()) throw ProtocolError("not understood: '" + json_.begin().key() + "'");
  }

 private:
  Json json_;
};

// What frames hold, as JSON.

void add(Json& json, const ScreenContent& content) {
  json["widgets"] = content.texts;
  if (!content.list.empty()) json["list"] = content.list;
  if (!content.skin.empty()) json["skin"] = content.skin;
}

void add(Json& json, const MessageContent& content) {
  json["type"] = nameOf(content.type);
  json["text"] = content.text;
  json["timeout"] = content.timeout;
}

void add(Json& json, const ChoiceContent& content) {
  json["text"] = content.question;
}

void add(Json& json, const ConsoleContent& content) {
  json["text"] = content.output;
  json["running"] = content.is_running;
}

void add(Json& json, const PackagesContent& content) {
  Json packages = Json::array();
  for (const Package& package : content.packages) {
    packages.push_back({{"name", package.name}, {"state", nameOf(package.state)}});
  }
  json["packages"] = std::move(packages);
  json["running"] = content.is_running;
}

void addRows(Json& json, const Rows& rows) {
  Json texts = Json::array();
  Json pictures = Json::array();
  for (const Row& row : rows) {
    texts.push_back({row.text, row.description});
    pictures.push_back(row.picture);
  }
  json["rows"] = std::move(texts);
  const auto hasPicture = [](const Row& row) { return !row.picture.empty(); };
  if (std::ranges::any_of(rows, hasPicture)) json["pictures"] = std::move(pictures);
}

// Layers as they cross the socket.

const LayerView* findLayer(const Frame& frame, std::uint64_t id) {
  const auto found = std::ranges::find(frame.layers, id, &LayerView::id);
  return found == frame.layers.end() ? nullptr : &*found;
}

/// Returns how many bytes a console has put out in all.
std::uint64_t endOf(const ConsoleContent& console) {
  return console.dropped + console.output.size();
}

/// Leaves out what the reader has of the console's output.
void shortenOutput(Json& json, const ConsoleContent& console, const LayerView* before) {
  json["dropped"] = console.dropped;
  const auto* const old = before ? before->as<ConsoleContent>() : nullptr;
  if (!old || endOf(*old) <= console.dropped) return;
  json["text"] = console.output.substr(endOf(*old) - console.dropped);
}

const char* nameOf(const Content& content) {
  constexpr const char* kNames[] = {"screen", "message", "choice", "console", "packages"};
  static_assert(std::size(kNames) == std::variant_size_v<Content>);
  return kNames[content.index()];
}

/// `before`: the layer as the reader has it, null for one that it does not have.
Json layerJson(const LayerView& layer, const LayerView* before) {
  Json json = {{"id", layer.id},
               {"kind", nameOf(layer.content)},
               {"screen", layer.screen},
               {"title", layer.title},
               {"selected", layer.selected}};
  if (!before || before->rows != layer.rows) addRows(json, *layer.rows);
  std::visit([&json](const auto& content) { add(json, content); }, layer.content);
  if (const auto* const console = layer.as<ConsoleContent>()) {
    shortenOutput(json, *console, before);
  }
  return json;
}

SharedRows takeRows(Members& members) {
  Rows rows;
  for (auto& [text, description] :
       members.take<std::vector<std::pair<std::string, std::string>>>("rows")) {
    rows.push_back({std::move(text), std::move(description)});
  }
  if (members.has("pictures")) {
    std::vector<std::string> pictures = members.take<std::vector<std::string>>("pictures");
    if (pictures.size() != rows.size()) throw ProtocolError("not a picture a row");
    for (std::size_t row = 0; row < rows.size(); ++row)
      rows[row].picture = std::move(pictures[row]);
  }
  return std::make_shared<const Rows>(std::move(rows));
}

ScreenContent takeScreen(Members& members) {
  ScreenContent screen{.texts = members.take<std::map<std::string, std::string>>("widgets")};
  if (members.has("list")) screen.list = members.take<std::string>("list");
  if (members.has("skin")) screen.skin = members.take<std::string>("skin");
  return screen;
}

MessageContent takeMessage(Members& members) {
  return {.type = typeOf(members.take<std::string>("type")),
          .text = members.take<std::string>("text"),
          .timeout = members.take<int>("timeout")};
}

ConsoleContent takeConsole(Members& members, const LayerView* before) {
  ConsoleContent console{.output = members.take<std::string>("text"),
                         .dropped = members.take<std::uint64_t>("dropped"),
                         .is_running = members.take<bool>("running")};
  const auto* const old = before ? before->as<ConsoleContent>() : nullptr;
  if (old && endOf(*old) > console.dropped) {
    if (console.dropped < old->dropped) throw ProtocolError("output that was dropped is back");
    console.output.insert(0, old->output, console.dropped - old->dropped);
  }
  return console;
}

PackagesContent takePackages(Members& members) {
  PackagesContent packages{.is_running = members.take<bool>("running")};
  for (Json& json : members.take<std::vector<Json>>("packages")) {
    Members package(std::move(json));
    packages.packages.push_back(
        {package.take<std::string>("name"), stateOf(package.take<std::string>("state"))});
    package.requireAllTaken();
  }
  return packages;
}

Content takeContent(const std::string& kind, Members& members, const LayerView* before) {
  if (kind == "screen") return takeScreen(members);
  if (kind == "message") return takeMessage(members);
  if (kind == "choice") return ChoiceContent{.question = members.take<std::string>("text")};
  if (kind == "console") return takeConsole(members, before);
  if (kind == "packages") return takePackages(members);
  throw ProtocolError("not understood: '" + kind + "'");
}

/// `before`: the frame that was read before, which has what a layer leaves out.
LayerView takeLayer(Json json, const Frame& before) {
  Members members(std::move(json));
  LayerView layer{.id = members.take<std::uint64_t>("id"),
                  .screen = members.take<std::string>("screen"),
                  .title = members.take<std::string>("title"),
                  .selected = members.take<std::size_t>("selected")};
  const LayerView* const old = findLayer(before, layer.id);
  if (!old || members.has("rows")) {
    layer.rows = takeRows(members);
  } else {
    layer.rows = old->rows;
  }
  layer.content = takeContent(members.take<std::string>("kind"), members, old);
  members.requireAllTaken();
  if (layer.selected > 0 && layer.selected >= layer.rows->size()) {
    throw ProtocolError("no row " + std::to_string(layer.selected));
  }
  return layer;
}

/// Takes a frame's word, which is "" for the opening.
Word takeWord(Members& members) {
  const auto text = members.take<std::string>("word");
  if (text.empty()) return {};
  const auto word = parseWord(text);
  if (!word) throw ProtocolError("not understood: '" + text + "'");
  return *word;
}

// Messages.

Json message(const char* kind, Json content) {
  return {{"version", kProtocolVersion}, {kind, std::move(content)}};
}

/// Returns the message without its version.
Members membersOf(std::string_view json) {
  Json message = Json::parse(json, nullptr, false);
  if (message.is_discarded()) throw ProtocolError("no JSON: " + beginningOf(std::string(json)));
  Members members(std::move(message));
  const int version = members.take<int>("version");
  if (version != kProtocolVersion) {
    throw ProtocolError("not understood: version " + std::to_string(version));
  }
  return members;
}

Json frameJson(const Frame& frame, const Frame& before) {
  Json layers = Json::array();
  for (const LayerView& layer : frame.layers) {
    layers.push_back(layerJson(layer, findLayer(before, layer.id)));
  }
  return {{"word", frame.word.text}, {"layers", std::move(layers)}};
}

Frame takeFrame(Json json, const Frame& before) {
  Members members(std::move(json));
  Frame frame{.word = takeWord(members)};
  for (Json& layer : members.take<std::vector<Json>>("layers")) {
    frame.layers.push_back(takeLayer(std::move(layer), before));
  }
  members.requireAllTaken();
  return frame;
}

Json messageOf(const RowMissing& /*report*/) {
  return message("missing", true);
}
Json messageOf(const Changed& /*report*/) {
  return message("changed", true);
}
Json messageOf(const LogLine& line) {
  return message("log", line.text);
}
Json messageOf(const CommandStart& command) {
  return message("command", command.text);
}
Json messageOf(const UncaughtError& error) {
  return message("error", error.text);
}
Json messageOf(const Fatal& fatal) {
  return message("fatal", fatal.text);
}

}  // namespace

std::string jsonOf(const Frame& frame) {
  Json json = {{"key", frame.word.text},    {"screen", ""},          {"title", ""},
               {"widgets", Json::object()}, {"rows", Json::array()}, {"selected", 0}};
  if (const LayerView* const top = frame.top()) {
    json["screen"] = top->screen;
    json["title"] = top->title;
    json["selected"] = top->selected;
    addRows(json, *top->rows);
    std::visit([&json](const auto& content) { add(json, content); }, top->content);
  }
  return json.dump();
}

std::string jsonOf(const Event& event) {
  Json json = {{"event", nameOf(event.kind)}};
  if (event.kind == Event::Kind::error) json["text"] = event.text;
  return json.dump();
}

std::string jsonOf(const Request& request) {
  return (request.word ? message("word", request.word->text) : message("show", true)).dump();
}

Request parseRequest(std::string_view json) {
  Members members = membersOf(json);
  Request request;
  if (members.has("show")) {
    members.take<bool>("show");
  } else {
    request.word = takeWord(members);
    if (request.word->kind == Word::Kind::opening) throw ProtocolError("not understood: ''");
  }
  members.requireAllTaken();
  return request;
}

std::string ReportWriter::jsonOf(const Report& report) {
  const auto toJson = [this](const auto& content) {
    if constexpr (std::is_same_v<decltype(content), const FrameReport&>) {
      const auto* const cause =
          std::ranges::find(kCauses, content.cause, [](const auto& known) { return known.cause; });
      return message(cause->name, frameJson(content.frame, last_));
    } else {
      return messageOf(content);
    }
  };
  const Json json = std::visit(toJson, report);
  if (const auto* const shown = std::get_if<FrameReport>(&report)) last_ = shown->frame;
  return json.dump();
}

Report ReportReader::parse(std::string_view json) {
  Members members = membersOf(json);
  const auto takeReport = [&]() -> Report {
    for (const auto& [cause, name] : kCauses) {
      if (!members.has(name)) continue;
      last_ = takeFrame(members.take<Json>(name), last_);
      return FrameReport{cause, last_};
    }
    if (members.has("missing")) return members.take<bool>("missing"), RowMissing();
    if (members.has("changed")) return members.take<bool>("changed"), Changed();
    if (members.has("log")) return LogLine{members.take<std::string>("log")};
    if (members.has("command")) return CommandStart{members.take<std::string>("command")};
    if (members.has("error")) return UncaughtError{members.take<std::string>("error")};
    if (!members.has("fatal")) members.requireAllTaken();
    return Fatal{members.take<std::string>("fatal")};
  };
  Report report = takeReport();
  members.requireAllTaken();
  return report;
}

}  // namespace desk
