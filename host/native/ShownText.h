#pragma once

#include <string>

namespace native {

/// Returns `bytes` as text that can be shown: UTF-8 as it stands, and every byte that is not part
/// of valid UTF-8 as "\xNN".
std::string shownText(const std::string& bytes);

}  // namespace native
