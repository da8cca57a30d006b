# embed(TARGET NAME SOURCE): makes "NAME.h", below the build's copy of the calling folder, in which
# embedded::NAME holds the bytes of the file SOURCE, or of the folder SOURCE packed by tar and gzip.
# The same file, run as a script, writes that header.

function(embed target name source)
  set(path ${CMAKE_CURRENT_SOURCE_DIR}/${source})
  set(files ${path})
  if(IS_DIRECTORY ${path})
    file(GLOB_RECURSE files CONFIGURE_DEPENDS ${path}/*)
  endif()
  set(header ${CMAKE_CURRENT_BINARY_DIR}/${name}.h)
  set(script ${CMAKE_CURRENT_FUNCTION_LIST_FILE})
  add_custom_command(
    OUTPUT ${header}
    COMMAND ${CMAKE_COMMAND} -DNAME=${name} -DSOURCE=${path} -DHEADER=${header} -P ${script}
    DEPENDS ${files} ${script}
    VERBATIM)
  target_sources(${target} PRIVATE ${header})
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  if(IS_DIRECTORY ${SOURCE})
    set(packed ${HEADER}.tar.gz)
    execute_process(COMMAND ${CMAKE_COMMAND} -E tar czf ${packed} .
                    WORKING_DIRECTORY ${SOURCE} COMMAND_ERROR_IS_FATAL ANY)
    set(SOURCE ${packed})
  endif()
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
