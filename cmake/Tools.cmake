# What makes a build quicker, where it is installed: a compiler cache and a linker.

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # A precompiled header is found again by its content (ccache(1), "Precompiled headers").
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
  else()
    add_compile_options(-fpch-preprocess)
  endif()
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # g++ collects garbage less often, from 1 GiB on (gcc(1), ggc-min-heapsize); that saves a tenth of its time.
  add_compile_options(--param=ggc-min-heapsize=1048576)
endif()

# What is made for a receiver is linked by its own toolchain. host/receiver/exports.map names two entry points, of which
# a module has one: mold would warn that the other is undefined.
if(NOT CMAKE_CROSSCOMPILING)
  foreach(linker mold lld)
    find_program(LINKER_${linker} ld.${linker})
    if(LINKER_${linker})
      add_link_options(-fuse-ld=${linker} -Wl,--undefined-version)
      break()
    endif()
  endforeach()
endif()
