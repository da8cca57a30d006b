#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Descriptor.h"
#include "base/Root.h"

namespace preview {

/// Compares the content of a receiver's file with other content, chunk by chunk.
class Contents {
 public:
  enum class Verdict { same, different, unreadable };

  /// Nothing has been compared of the file `path` yet.
  Contents(const base::Root& receiver, const std::string& path);

  /// Takes the next bytes of the other content.
  void compare(std::string_view bytes);

  /// Returns what there is to say after the bytes so far; only "same" may turn into another.
  Verdict verdict() const { return verdict_; }

 private:
  std::string path_;
  base::Descriptor file_;
  std::vector<char> buffer_;
  Verdict verdict_ = Verdict::same;
};

}  // namespace preview
