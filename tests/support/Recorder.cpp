#include "tests/support/Recorder.h"

#include <cstdio>
#include <type_traits>
#include <utility>

namespace support {
namespace {

using host::Arguments;
using host::Object;
using plain::argument;
using plain::make;

std::string octal(const Object& mode) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%#llo", plain::as<plain::Number>(mode)->number);
  return digits;
}

/// Writes down the names that the module binds.
struct RecordedNames : plain::Names {
  explicit RecordedNames(Journal& journal_) : journal(journal_) {}
  void bind(const host::Binding& binding) override {
    const std::string name = binding.name;
    const std::string bound_as = binding.bound_as;
    journal.note("from " + std::string(binding.unit) + " import " + name +
                 (name == bound_as ? "" : " as " + bound_as));
  }

  Journal& journal;
};

struct RecordedText : plain::ConfigText {
  RecordedText(Journal& journal_, std::string construction_, const Object& default_value_)
      : ConfigText(default_value_), journal(journal_), construction(std::move(construction_)) {}

  Object get(std::string_view name) override {
    journal.note(path + "." + std::string(name));
    return ConfigText::get(name);
  }
  void set(std::string_view name, const Object& new_value) override {
    journal.note(path + "." + std::string(name) + " = " + described(new_value));
    ConfigText::set(name, new_value);
  }
  Object invoke(std::string_view name, Arguments arguments) override {
    journal.note(path + "." + std::string(name) + "(" + described(arguments) + ")");
    return ConfigText::invoke(name, arguments);
  }

  Journal& journal;
  const std::string construction;
};

struct RecordedSection : plain::ConfigSection {
  RecordedSection(Journal& journal_, plain::Settings& settings_, std::string path_ = "")
      : ConfigSection(settings_), journal(journal_) {
    path = std::move(path_);
  }

  void set(std::string_view name, const Object& value) override {
    const auto* const text = plain::as<RecordedText>(value);
    journal.note(path + "." + std::string(name) + " = " +
                 (text ? text->construction : "ConfigSubsection()"));
    ConfigSection::set(name, value);
  }
  Object invoke(std::string_view name, Arguments arguments) override {
    journal.note(path + "." + std::string(name) + "(" + described(arguments) + ")");
    return {};
  }

  Journal& journal;
};

/// A widget, by the expression that names it in the journal: its construction, and its place in a
/// screen once it has one.
struct RecordedWidget {
  Journal& journal;
  std::string expression;

  void note(std::string_view operation, Arguments arguments) const {
    journal.note(expression + "." + std::string(operation) + "(" + described(arguments) + ")");
  }
};

template <class Base>
struct Recorded : Base, RecordedWidget {
  template <class... Parts>
  Recorded(Journal& its_journal, std::string construction, Parts&&... parts)
      : Base(std::forward<Parts>(parts)...), RecordedWidget{its_journal, std::move(construction)} {}

  Object invoke(std::string_view name, Arguments arguments) override {
    note(name, arguments);
    return Base::invoke(name, arguments);
  }
};

/// A "MenuList" takes its rows by its attribute "l".
struct RecordedMenuList : Recorded<plain::ListWidget> {
  using Recorded::Recorded;
  Object invoke(std::string_view name, Arguments arguments) override {
    note(name == "setList" ? "l.setList" : name, arguments);
    return ListWidget::invoke(name, arguments);
  }
};

/// The hooks of a screen's layout.
struct RecordedHooks : plain::Sequence {
  explicit RecordedHooks(Journal& journal_)
      : Sequence(std::vector<Object>{}, false), journal(journal_) {}
  Object invoke(std::string_view name, Arguments arguments) override {
    journal.note("onLayoutFinish." + std::string(name) + "(" + described(arguments) + ")");
    return Sequence::invoke(name, arguments);
  }

  Journal& journal;
};

struct RecordedScreen : plain::Screen {
  RecordedScreen(Journal& journal_, const std::string& class_name)
      : Screen(class_name), journal(journal_) {
    attributes["onLayoutFinish"] = make<RecordedHooks>(journal);
  }
  void set(std::string_view name, const Object& value) override {
    if (name == "title" || name == "skin_path")
      journal.note("self." + std::string(name) + " = " + described(value));
    Screen::set(name, value);
  }
  void setItem(const Object& key, const Object& value) override {
    const std::string place = "self[" + described(key) + "]";
    auto* const widget = dynamic_cast<RecordedWidget*>(&plain::nodeOf(value));
    journal.note(place + " = " + widget->expression);
    widget->expression = place;
    Screen::setItem(key, value);
  }
  Object invoke(std::string_view name, Arguments arguments) override {
    if (name == "close") journal.note("close(" + described(arguments) + ")");
    return Screen::invoke(name, arguments);
  }

  Journal& journal;
};

}  // namespace

std::optional<std::string> MemorySettings::stored(const std::string& path) {
  const auto found = values.find(path);
  return found == values.end() ? std::nullopt : found->second;
}

Recorder::Recorder(Journal& journal)
    : plain::Host(system, settings, make<RecordedNames>(journal)), journal_(journal) {
  recordFunctions();
  recordSettings();
  recordWidgets();
  recordScreens();
  recordChannels();
}

Recorder::~Recorder() = default;

void Recorder::answer(const Object& result) {
  const Object callback = std::exchange(callback_, {});
  callback({result});
}

/// Returns `run` as a function whose calls are journaled: "EXPRESSION(ARGUMENTS)SUFFIX".
Object Recorder::recorded(const std::string& expression, plain::Function::Run run,
                          const std::string& suffix) {
  return plain::function([this, expression, suffix, run = std::move(run)](Arguments arguments) {
    journal_.note(expression + "(" + described(arguments) + ")" + suffix);
    return run(arguments);
  });
}

void Recorder::recordFunctions() {
  struct Name {
    const char* name;
    const char* expression;
    const char* suffix = "";
  };
  constexpr Name kNames[] = {
      {"system", "os.system"},
      {"popen", "os.popen", ".readlines()"},
      {"open", "open"},
      {"listdir", "os.listdir"},
      {"os_stat", "os_stat", ".st_size"},
      {"makedirs", "os.makedirs"},
      {"remove", "os.remove"},
      {"fileExists", "fileExists"},
      {"resolveFilename", "resolveFilename"},
      {"localtime", "localtime"},
  };
  for (const auto& [name, expression, suffix] : kNames) {
    bind(name, recorded(expression, plain::as<plain::Function>(named(name))->run, suffix));
  }
  bind("chmod", [this, real = plain::as<plain::Function>(named("chmod"))->run](Arguments given) {
    journal_.note("os.chmod(" + described(argument(given, 0)) + ", " + octal(argument(given, 1)) +
                  ")");
    return real(given);
  });
  for (const char* object : {"os_path", "plugins", "nimmanager"}) {
    auto& attributes = plain::as<plain::Instance>(named(object))->attributes;
    for (auto& [name, function] : attributes) {
      function =
          recorded(std::string(object) + "." + name, plain::as<plain::Function>(function)->run);
    }
  }
  bind("_", recorded("_", [this](Arguments given) {
         const auto found = translations.find(plain::textOf(argument(given, 0)));
         return found == translations.end() ? argument(given, 0) : Object(found->second);
       }));
  bind("print", recorded("print", &plain::nothing));
  const Object model_name =
      recorded("HardwareInfoVu().get_device_name", [this](Arguments) { return Object(model); });
  bind("HardwareInfoVu", [model_name](Arguments) {
    return plain::instance("HardwareInfoVu", {{"get_device_name", model_name}});
  });
}

void Recorder::recordSettings() {
  const auto section = [this](const char* path) {
    return make<RecordedSection>(journal_, settings, path);
  };
  const auto attach = [](const Object& parent, const char* name, const Object& child) {
    plain::as<plain::Instance>(parent)->attributes[name] = child;
  };
  const Object config = section("config");
  const Object plugins = section("config.plugins");
  attach(config, "plugins", plugins);
  attach(plugins, "qorpanel", section("config.plugins.qorpanel"));
  bind("config", config);
  bind("ConfigSubsection", [section](Arguments) { return section(""); });
  bind("ConfigText", [this](Arguments given) {
    return make<RecordedText>(journal_, "ConfigText(" + described(given) + ")",
                              argument(given, 3, "default"));
  });
}

void Recorder::recordWidgets() {
  const auto bindWidget = [this]<class Widget>(const char* name, std::type_identity<Widget>) {
    bind(name, [this, name](Arguments given) {
      const std::string construction = std::string(name) + "(" + described(given) + ")";
      journal_.note(construction);
      if constexpr (std::is_base_of_v<plain::ActionMap, Widget>) {
        return make<Widget>(journal_, construction, given);
      } else {
        return make<Widget>(journal_, construction, argument(given, 0));
      }
    });
  };
  bindWidget("StaticText", std::type_identity<Recorded<plain::TextWidget>>());
  bindWidget("Label", std::type_identity<Recorded<plain::TextWidget>>());
  bindWidget("List", std::type_identity<Recorded<plain::ListWidget>>());
  bindWidget("MenuList", std::type_identity<RecordedMenuList>());
  bindWidget("ActionMap", std::type_identity<Recorded<plain::ActionMap>>());
  bindWidget("NumberActionMap", std::type_identity<Recorded<plain::ActionMap>>());
  bind("LoadPixmap", recorded("LoadPixmap", [this](Arguments given) {
         const std::string path = plain::textOf(argument(given, 0, "path"));
         return missing_pictures.contains(path) ? Object()
                                                : make<NamedObject>("<pixmap " + path + ">");
       }));
}

void Recorder::recordScreens() {
  const Object recorded_screen = make<plain::Type>("Screen", [this](Arguments given) {
    return make<RecordedScreen>(journal_, plain::textOf(argument(given, 0)));
  });
  plain::nodeOf(recorded_screen).set("__init__", plain::function([this](Arguments) {
                                       return journal_.note("Screen.__init__(session)"), Object();
                                     }));
  bind("Screen", recorded_screen);
  bind("ComConsole",
       recorded("ComConsole", [](Arguments) { return make<NamedObject>("<console>"); }));
  auto* const ipkg = plain::as<plain::Type>(named("IpkgComponent"));
  const Object recorded_ipkg = make<plain::Type>("IpkgComponent", [this](Arguments) {
    journal_.note("IpkgComponent()");
    return make<Recorded<plain::IpkgComponent>>(journal_, "ipkg",
                                                [](plain::IpkgComponent&, const Object&) {});
  });
  plain::as<plain::Type>(recorded_ipkg)->attributes = ipkg->attributes;
  bind("IpkgComponent", recorded_ipkg);
  session_ = make<plain::Session>([this](const plain::Dialog& dialog) { return open(dialog); });
}

/// Journals the opening as the framework's language writes it.
Object Recorder::open(const plain::Dialog& dialog) {
  std::string call = dialog.callback.isNone()
                         ? "session.open("
                         : "session.openWithCallback(" + described(dialog.callback) + ", ";
  call += dialog.name;
  for (const Object& given : dialog.arguments) call += ", " + described(given);
  for (const char* keyword : {"title", "list", "cmdlist", "cmdList", "timeout"}) {
    if (dialog.keywords.contains(keyword))
      call += std::string(", ") + keyword + "=" + described(dialog.keyword(keyword));
  }
  journal_.note(call + ")");
  opened.push_back(dialog);
  if (!dialog.callback.isNone()) callback_ = dialog.callback;
  return plain::instance("Dialog", {{"setTitle", recorded("dialog.setTitle", &plain::nothing)}});
}

void Recorder::recordChannels() {
  const auto recordedObject = [this](const std::string& name,
                                     std::initializer_list<const char*> operations,
                                     const plain::Function::Run& run) {
    Object made = make<plain::Instance>(name);
    for (const char* operation : operations) {
      plain::nodeOf(made).set(operation, recorded(name + "." + operation, run));
    }
    return made;
  };
  const Object database = recordedObject("eDVBDB.getInstance()",
                                         {"reloadServicelist", "reloadBouquets"}, &plain::nothing);
  bind("eDVBDB",
       plain::instance(
           "type", {{"getInstance", plain::function([database](Arguments) { return database; })}}));
  const Object list =
      recordedObject("servicelist", {"setRoot", "setCurrentSelection"}, &plain::nothing);
  plain::nodeOf(list).set("getRoot", recorded("servicelist.getRoot", [](Arguments) {
                            return make<NamedObject>("<root>");
                          }));
  plain::nodeOf(list).set("getCurrentSelection",
                          recorded("servicelist.getCurrentSelection",
                                   [](Arguments) { return make<NamedObject>("<service>"); }));
  struct InfoBar : plain::Node {
    InfoBar(Recorder& recorder_, Journal& journal_, Object list_)
        : recorder(recorder_), journal(journal_), list(std::move(list_)) {}
    std::string className() const override { return "InfoBar"; }
    Object get(std::string_view name) override {
      if (name == "instance")
        return recorder.has_info_bar ? make<InfoBar>(recorder, journal, list) : Object();
      journal.note("InfoBar.instance.servicelist");
      return list;
    }
    Recorder& recorder;
    Journal& journal;
    const Object list;
  };
  bind("InfoBar", make<InfoBar>(*this, journal_, list));
}

}  // namespace support
