#include "host/receiver/Classes.h"

#include <memory>

#include "host/receiver/Peer.h"
#include "host/receiver/Sessions.h"
#include "plugin/src/BackupActions.h"
#include "plugin/src/Stowline.h"
#include "plugin/src/StowlineHelpScreen.h"
#include "plugin/src/StowlineRestore.h"

namespace receiver {
namespace {

using stowline::BackupActions;
using stowline::Stowline;
using stowline::StowlineHelpScreen;
using stowline::StowlineRestore;

constexpr Parameter kAnswer = {"ret", Default::FALSE};
constexpr Parameter kEvent = {"event"};
constexpr Parameter kEventParameter = {"param"};

/// Lets an engine ask for the operations that a sub-class has put in the place of its own.
class EngineOverrides : public host::Overrides {
 public:
  explicit EngineOverrides(const Self& self) : self_(self) {}
  std::optional<host::Value> callOverride(std::string_view name,
                                          const host::Value::List& arguments) override {
    return self_.callOverride(name, arguments);
  }

 private:
  const Self& self_;
};

class EngineInstance : public Instance {
 public:
  explicit EngineInstance(std::shared_ptr<BackupActions> engine)
      : Instance(kBackupActions), overrides_(self()), engine_(std::move(engine)) {
    engine_->setOverrides(overrides_);
  }
  void* object() override { return engine_.get(); }

 private:
  EngineOverrides overrides_;
  std::shared_ptr<BackupActions> engine_;
};

template <class ScreenType>
class ScreenInstance : public Instance {
 public:
  ScreenInstance(const Class& table, const Names& names, PyObject* session)
      : Instance(table), peer_(names, self()), session_(names, peer_, Reference::borrow(session)) {}
  ~ScreenInstance() override {
    if (screen_) std::destroy_at(screen_);
  }
  ScreenInstance(const ScreenInstance&) = delete;
  ScreenInstance& operator=(const ScreenInstance&) = delete;

  /// Constructs the screen for `object`, whose operations may be called as soon as the framework
  /// knows of it.
  template <class... Arguments>
  ScreenType& construct(host::Host& host, PyObject* object, const Arguments&... arguments) {
    const Self::Entered entered(self(), object);
    screen_ = &place_.screen;
    try {
      return *std::construct_at(screen_, host, peer_, session_, arguments...);
    } catch (...) {
      screen_ = nullptr;
      throw;
    }
  }

  void* object() override { return screen_; }

 private:
  /// Room for the screen, which is there before it is constructed.
  union Place {
    Place() {}
    ~Place() {}
    ScreenType screen;
  };

  Peer peer_;
  ScreenSession session_;
  Place place_;
  ScreenType* screen_ = nullptr;
};

/// Returns an object of the class BackupActions that has `jobs` for its engine.
Reference engineObject(const MadeClass& type, const std::shared_ptr<stowline::BackupJobs>& jobs) {
  auto engine = std::dynamic_pointer_cast<BackupActions>(jobs);
  Reference object = invoke<"__new__">(type.type, type.type);
  Attaching attaching(object.get(), type, std::make_unique<EngineInstance>(std::move(engine)));
  attaching.keep();
  return object;
}

/// Returns an argument that is compared with texts: no text for what is none.
std::string kindOf(const Reference& argument) {
  return isText(argument.get()) ? textOf(argument.get()) : "";
}

Reference constructEngine(const Call& call) {
  auto engine = std::make_shared<BackupActions>(call.module.host, kindOf(call.arguments[0]));
  Attaching attaching(call.self, *call.type, std::make_unique<EngineInstance>(std::move(engine)));
  attaching.keep();
  return Reference::borrow(Py_None);
}

/// Constructs a screen with two texts, and lets `finish` complete it.
template <class ScreenType, class Finish>
Reference construct(const Call& call, const std::string& first, const std::string& second,
                    Finish finish) {
  auto instance = std::make_unique<ScreenInstance<ScreenType>>(
      call.type->table, call.module.host.names(), call.arguments[0].get());
  ScreenInstance<ScreenType>& attached = *instance;
  Attaching attaching(call.self, *call.type, std::move(instance));
  finish(attached.construct(call.module.host, call.self, first, second));
  attaching.keep();
  return Reference::borrow(Py_None);
}

Reference constructMenu(const Call& call) {
  const auto give_engine_to = [&](Stowline& menu) {
    menu.backupactions =
        std::make_shared<JobsProxy>(engineObject(*call.module.engine, menu.backupactions));
  };
  return construct<Stowline>(call, textOf(call.arguments[1].get()), kindOf(call.arguments[2]),
                             give_engine_to);
}

template <class ScreenType>
Reference constructScreen(const Call& call) {
  return construct<ScreenType>(call, textOf(call.arguments[1].get()),
                               textOf(call.arguments[2].get()), [](ScreenType&) {});
}

constexpr Operation kEngineOperations[] = {
    operation<&BackupActions::createSettingFile>("createSettingFile"),
    operation<&BackupActions::createConfigFile>("createConfigFile"),
    operation<&BackupActions::createPluginList>("createPluginList"),
    operation<&BackupActions::saveAtileUserFiles>("saveAtileUserFiles"),
    operation<&BackupActions::saveVFDSkinUserFiles>("saveVFDSkinUserFiles"),
    operation<&BackupActions::saveUserFiles>("saveUserFiles", Parameter{"package_info"},
                                             Parameter{"start_strings"}, Parameter{"search_dirs"}),
    operation<&BackupActions::listdir_fullpath>("listdir_fullpath", Parameter{"d"}),
    operation<&BackupActions::houseKeeping>("houseKeeping"),
};

constexpr Attribute kEngineAttributes[] = {
    member<&BackupActions::executiontime>("executiontime"),
    member<&BackupActions::boxtype>("boxtype"),
    member<&BackupActions::path>("path"),
    member<&BackupActions::settingfile>("settingfile"),
    member<&BackupActions::configfile>("configfile"),
    member<&BackupActions::pluginfile>("pluginfile"),
};

constexpr Operation kHelpScreenOperations[] = {
    operation<&StowlineHelpScreen::createMessage>("createMessage"),
    operation<&StowlineHelpScreen::keyGo>("keyGo"),
    operation<&StowlineHelpScreen::keyClose>("keyClose"),
};

constexpr Attribute kHelpScreenAttributes[] = {
    member<&StowlineHelpScreen::restorefile>("restorefile"),
    member<&StowlineHelpScreen::fullrestorepath>("fullrestorepath"),
};

constexpr Operation kMenuOperations[] = {
    operation<&Stowline::createMenu>("createMenu"),
    operation<&Stowline::runMenuEntry>("runMenuEntry", Parameter{"ret", Default::NONE}),
    operation<&Stowline::backuprestorepath_choosen>("backuprestorepath_choosen",
                                                    Parameter{"option"}),
    operation<&Stowline::checkFolders>("checkFolders"),
    operation<&Stowline::keyCancel>("keyCancel"),
    operation<&Stowline::ipkgCallback>("ipkgCallback", kEvent, kEventParameter),
    operation<&Stowline::installLocalPlugins>("installLocalPlugins"),
};

constexpr Attribute kMenuAttributes[] = {
    member<&Stowline::screentype>("screentype"),
    member<&Stowline::reloadPluginlist>("reloadPluginlist"),
    member<&Stowline::backupactions>("backupactions"),
    member<&Stowline::list>("list"),
    member<&Stowline::cmdList>("cmdList"),
    member<&Stowline::Console>("Console"),
    member<&Stowline::ipkg>("ipkg"),
    member<&Stowline::restoretype>("restoretype"),
    member<&Stowline::backuprestorepath>("backuprestorepath"),
    member<&Stowline::path>("path"),
    member<&Stowline::ipklist>("ipklist"),
    member<&Stowline::pluginsinstalled>("pluginsinstalled"),
    member<&Stowline::pluginsinstalledclean>("pluginsinstalledclean"),
};

constexpr Operation kRestoreOperations[] = {
    operation<&StowlineRestore::fill_list>("fill_list"),
    operation<&StowlineRestore::KeyOk>("KeyOk"),
    operation<&StowlineRestore::restoreSettings>("restoreSettings"),
    operation<&StowlineRestore::startRestore>("startRestore", kAnswer),
    operation<&StowlineRestore::runScript>("runScript", kAnswer),
    operation<&StowlineRestore::deleteFile>("deleteFile"),
    operation<&StowlineRestore::startDelete>("startDelete", kAnswer),
    operation<&StowlineRestore::keyCancel>("keyCancel", kAnswer),
    operation<&StowlineRestore::ipkgCallback>("ipkgCallback", kEvent, kEventParameter),
    operation<&StowlineRestore::installPlugins>("installPlugins"),
};

constexpr Attribute kRestoreAttributes[] = {
    member<&StowlineRestore::restoretype>("restoretype"),
    member<&StowlineRestore::sel>("sel"),
    member<&StowlineRestore::val>("val"),
    member<&StowlineRestore::entry>("entry"),
    member<&StowlineRestore::exe>("exe"),
    member<&StowlineRestore::path>("path"),
    member<&StowlineRestore::flist>("flist"),
    member<&StowlineRestore::cmdList>("cmdList"),
    member<&StowlineRestore::cmdlist>("cmdlist"),
    member<&StowlineRestore::Console>("Console"),
    member<&StowlineRestore::ipkg>("ipkg"),
    member<&StowlineRestore::plugins>("plugins"),
    member<&StowlineRestore::pluginsinstalled>("pluginsinstalled"),
    member<&StowlineRestore::pluginsinstalledclean>("pluginsinstalledclean"),
    member<&StowlineRestore::excludedplugins>("excludedplugins"),
};

}  // namespace

constexpr Class kBackupActions = {"BackupActions",
                                  {"__init__", &constructEngine, {{"backuptype", Default::NONE}}},
                                  kEngineOperations,
                                  kEngineAttributes};

constexpr Class kStowlineHelpScreen = {"StowlineHelpScreen",
                                       {"__init__",
                                        &constructScreen<StowlineHelpScreen>,
                                        {{"session"}, {"restorefile"}, {"fullrestorepath"}}},
                                       kHelpScreenOperations,
                                       kHelpScreenAttributes,
                                       &StowlineHelpScreen::skin};

constexpr Class kStowline = {
    "Stowline",
    {"__init__", &constructMenu, {{"session"}, {"plugin_path"}, {"screen_type", Default::NONE}}},
    kMenuOperations,
    kMenuAttributes};

constexpr Class kStowlineRestore = {"StowlineRestore",
                                    {"__init__",
                                     &constructScreen<StowlineRestore>,
                                     {{"session"}, {"restoretype"}, {"plugin_path"}}},
                                    kRestoreOperations,
                                    kRestoreAttributes};

}  // namespace receiver
