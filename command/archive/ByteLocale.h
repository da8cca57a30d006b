#pragma once

#include <locale.h>

namespace tarball {

/// While it lives, this thread takes names for bytes, whatever the user's locale says of them.
class ByteLocale {
 public:
  ByteLocale() : before_(uselocale(bytes())) {}
  ~ByteLocale() { uselocale(before_); }
  ByteLocale(const ByteLocale&) = delete;
  ByteLocale& operator=(const ByteLocale&) = delete;

 private:
  static locale_t bytes() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
  }

  locale_t before_;
};

}  // namespace tarball
