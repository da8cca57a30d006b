# embed(TARGET NAME FILE): makes "NAME.h", below the build's copy of the calling folder, in which embedded::NAME holds
# the bytes of the file. The same file, run as a script, writes that header.

function(embed target name file)
  cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
  set(header ${CMAKE_CURRENT_BINARY_DIR}/${name}.h)
  set(script ${CMAKE_CURRENT_FUNCTION_LIST_FILE})
  add_custom_command(
    OUTPUT ${header}
    COMMAND ${CMAKE_COMMAND} -DNAME=${name} -DSOURCE=${file} -DHEADER=${header} -P ${script}
    DEPENDS ${file} ${script}
    VERBATIM)
  target_sources(${target} PRIVATE ${header})
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  file(READ ${SOURCE} bytes HEX)
  string(REGEX REPLACE "(..)" "\\\\x\\1" bytes "${bytes}")
  file(WRITE ${HEADER} "#pragma once

#include <string_view>

namespace embedded {
using namespace std::string_view_literals;
inline constexpr std::string_view ${NAME} = \"${bytes}\"sv;
}  // namespace embedded
")
endif()
