#include "Classes.h"

#include "BackupActions.h"
#include "Stowline.h"
#include "StowlineHelpScreen.h"
#include "StowlineRestore.h"

namespace receiver {
namespace {

using stowline::BackupActions;
using stowline::Stowline;
using stowline::StowlineHelpScreen;
using stowline::StowlineRestore;

constexpr Parameter kAnswer = {"ret", Default::FALSE};
constexpr Parameter kEvent = {"event"};
constexpr Parameter kEventParameter = {"param"};

class EngineInstance : public Instance {
 public:
  explicit EngineInstance(std::shared_ptr<BackupActions> engine)
      : Instance(kBackupActions), engine_(std::move(engine)) {}
  void* object() override { return engine_.get(); }

 private:
  std::shared_ptr<BackupActions> engine_;
};

template <class ScreenType>
class ScreenInstance : public Instance {
 public:
  ScreenInstance(const Class& type, const Names& names, PyObject* session)
      : Instance(type), peer_(names), session_(names, peer_, Reference::borrow(session)) {}

  /// Constructs the screen for `self`.
  template <class... Arguments>
  ScreenType& construct(host::Host& host, PyObject* self, const Arguments&... arguments) {
    const Peer::Entered entered(peer_, self);
    screen_ = std::make_unique<ScreenType>(host, peer_, session_, arguments...);
    return *screen_;
  }

  void* object() override { return screen_.get(); }
  Peer* peer() override { return &peer_; }

  void readBack(PyObject* self) override {
    if constexpr (requires { screen_->skin_path; }) {
      const Reference path = Reference::steal(PyObject_GetAttr(self, named<"skin_path">()));
      PyErr_Clear();
      if (path && isText(path.get())) screen_->skin_path = textOf(path.get());
    }
  }

 private:
  Peer peer_;
  ScreenSession session_;
  std::unique_ptr<ScreenType> screen_;
};

/// Returns an object of the class BackupActions that has `jobs` for its engine.
Reference engineObject(const Module& module, const std::shared_ptr<stowline::BackupJobs>& jobs) {
  auto engine = std::dynamic_pointer_cast<BackupActions>(jobs);
  Reference object = invoke<"__new__">(module.engine_class, module.engine_class);
  attachInstance(object.get(), std::make_unique<EngineInstance>(std::move(engine)));
  return object;
}

Reference constructEngine(const Call& call) {
  const host::Value type = valueOf(call.arguments[0]);
  std::optional<std::string_view> backuptype;
  if (type.text()) backuptype = *type.text();
  attachInstance(call.self, std::make_unique<EngineInstance>(
                                std::make_shared<BackupActions>(call.module.host, backuptype)));
  return Reference::borrow(Py_None);
}

Reference constructMenu(const Call& call) {
  const host::Value type = valueOf(call.arguments[2]);
  auto instance = std::make_unique<ScreenInstance<Stowline>>(kStowline, call.module.host.names(),
                                                             call.arguments[0]);
  Stowline& menu = instance->construct(call.module.host, call.self, textOf(call.arguments[1]),
                                       type.text() ? *type.text() : "backup");
  menu.backupactions = std::make_shared<JobsProxy>(engineObject(call.module, menu.backupactions));
  attachInstance(call.self, std::move(instance));
  return Reference::borrow(Py_None);
}

/// Constructs a screen that takes two texts.
template <class ScreenType, const Class& type>
Reference constructScreen(const Call& call) {
  auto instance = std::make_unique<ScreenInstance<ScreenType>>(type, call.module.host.names(),
                                                               call.arguments[0]);
  instance->construct(call.module.host, call.self, textOf(call.arguments[1]),
                      textOf(call.arguments[2]));
  attachInstance(call.self, std::move(instance));
  return Reference::borrow(Py_None);
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
                                        &constructScreen<StowlineHelpScreen, kStowlineHelpScreen>,
                                        {{"session"}, {"restorefile"}, {"fullrestorepath"}}},
                                       kHelpScreenOperations,
                                       kHelpScreenAttributes};

constexpr Class kStowline = {
    "Stowline",
    {"__init__", &constructMenu, {{"session"}, {"plugin_path"}, {"screen_type", Default::NONE}}},
    kMenuOperations,
    kMenuAttributes};

constexpr Class kStowlineRestore = {"StowlineRestore",
                                    {"__init__",
                                     &constructScreen<StowlineRestore, kStowlineRestore>,
                                     {{"session"}, {"restoretype"}, {"plugin_path"}}},
                                    kRestoreOperations,
                                    kRestoreAttributes};

}  // namespace receiver
