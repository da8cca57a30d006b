#pragma once

#include "desk/skin/Skin.h"

namespace desk::drawing {

/// Returns the layouts of the framework's dialogs, "MessageBox", "ChoiceBox", "Console" and "Ipkg",
/// for a television picture of this size. They have the widgets "type", "text", "timeout", "status"
/// and "list" as far as the dialog has a use for them.
Skin baseSkin(int width, int height);

}  // namespace desk::drawing
