#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/include/Components.h"
#include "tests/support/Journal.h"

namespace support {

/// Something of the host's that the module only keeps and hands back.
struct RecordingObject : host::Object {
  explicit RecordingObject(std::string text) : text(std::move(text)) {}
  std::string str() const override { return text; }
  std::string text;
};

/// What every recorded component has: how it was made, and its name in its screen.
struct RecordedComponent {
  RecordedComponent(Journal& journal, std::string construction)
      : journal(journal), construction(std::move(construction)) {}
  virtual ~RecordedComponent() = default;

  Journal& journal;
  std::string construction;  ///< as in `StaticText("Close")`
  std::string name;          ///< as in `self["key_red"]`; empty while it is in no screen
};

/// A text source or a text widget.
template <class Base>
struct RecordingText : Base, RecordedComponent {
  RecordingText(Journal& journal, const std::string& kind, const std::string& text)
      : RecordedComponent(journal, kind + "(" + quoted(text) + ")"), text(text) {}

  void setText(const std::string& newText) override {
    journal.note(name + ".setText(" + quoted(newText) + ")");
    text = newText;
  }

  std::string text;
};

using RecordingStaticText = RecordingText<host::StaticText>;
using RecordingLabel = RecordingText<host::Label>;

struct RecordingList : host::List, RecordedComponent {
  RecordingList(Journal& journal, const host::Value::List& entries);
  void setList(const host::Value::List& newEntries) override;
  host::Value getCurrent() override;

  host::Value::List entries;
  std::size_t cursor = 0;
};

struct RecordingMenuList : host::MenuList, RecordedComponent {
  RecordingMenuList(Journal& journal, const std::vector<std::string>& rows);
  void setList(const std::vector<std::string>& newRows) override;
  host::Value getCurrent() override;

  std::vector<std::string> rows;
  std::size_t cursor = 0;
};

struct RecordingActionMap : host::ActionMap, RecordedComponent {
  RecordingActionMap(Journal& journal, const std::string& kind, const host::ActionMapping& mapping);
  host::ActionMapping mapping;
};

struct RecordingComConsole : host::ComConsole {};

struct RecordingIpkgComponent : host::IpkgComponent {
  explicit RecordingIpkgComponent(Journal& journal) : journal(journal) {}
  void addCallback(const host::IpkgCallback& newCallback) override;
  void startCmd(host::IpkgCommand command) override;

  Journal& journal;
  std::optional<host::IpkgCallback> callback;
};

class RecordingComponents : public host::Components {
 public:
  explicit RecordingComponents(Journal& journal) : journal_(journal) {}

  /// The pictures that are not there.
  std::set<std::string> missingPictures;

  std::shared_ptr<host::StaticText> makeStaticText(const std::string& text) override;
  std::shared_ptr<host::Label> makeLabel(const std::string& text) override;
  std::shared_ptr<host::List> makeList(const host::Value::List& entries) override;
  std::shared_ptr<host::MenuList> makeMenuList(const std::vector<std::string>& rows) override;
  std::shared_ptr<host::ActionMap> makeActionMap(const host::ActionMapping& mapping) override;
  std::shared_ptr<host::ActionMap> makeNumberActionMap(const host::ActionMapping& mapping) override;
  std::shared_ptr<host::ComConsole> makeComConsole() override;
  std::shared_ptr<host::IpkgComponent> makeIpkgComponent() override;
  host::ObjectRef loadPixmap(const std::string& path, bool cached) override;

 private:
  template <class Widget, class... Arguments>
  std::shared_ptr<Widget> make(const Arguments&... arguments);

  Journal& journal_;
};

}  // namespace support
