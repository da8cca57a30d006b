# What a room's CMakeLists.txt says in a line or two. A target is named as its folder: desk/web is desk_web.

# add_room(NAME LIBRARY...): a static library of the calling folder's sources, and what it links.
function(add_room name)
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC ${ARGN})
endfunction()

# add_room_test(NAME [SHARDS count] [ROOMS folder...] LIBRARIES library...): a test program of the calling folder's
# sources. ctest runs it as one test, or as so many shards, which can run side by side. It tests ROOMS, by default
# the folder at the same path without "tests/".
function(add_room_test name)
  cmake_parse_arguments(PARSE_ARGV 1 test "" "SHARDS" "ROOMS;LIBRARIES")
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${test_LIBRARIES} test_support GTest::gtest_main)
  target_precompile_headers(${name} REUSE_FROM test_support)
  if(NOT test_ROOMS)
    file(RELATIVE_PATH test_ROOMS ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
  endif()
  if(NOT test_SHARDS)
    set(test_SHARDS 1)
  endif()
  math(EXPR last "${test_SHARDS} - 1")
  foreach(shard RANGE ${last})
    set(test ${name}.${shard})
    if(test_SHARDS EQUAL 1)
      set(test ${name})
    endif()
    add_test(NAME ${test} COMMAND ${name})
    set_tests_properties(${test} PROPERTIES TIMEOUT 600 ENVIRONMENT
      "GTEST_BRIEF=1;GTEST_TOTAL_SHARDS=${test_SHARDS};GTEST_SHARD_INDEX=${shard}")
    list(APPEND tests ${test})
  endforeach()
  cover_rooms(TESTS ${tests} TARGETS ${name} ROOMS ${test_ROOMS})
endfunction()

# cover_rooms(TESTS test... TARGETS target... ROOMS folder...): for scripts/loop, the tests that cover each of these
# rooms, labelled with its folder, and what they need: the target loop_FOLDER, with "_" for each "/".
function(cover_rooms)
  cmake_parse_arguments(PARSE_ARGV 0 cover "" "" "TESTS;TARGETS;ROOMS")
  set_property(TEST ${cover_TESTS} APPEND PROPERTY LABELS ${cover_ROOMS})
  foreach(room ${cover_ROOMS})
    string(REPLACE "/" "_" target loop_${room})
    if(NOT TARGET ${target})
      add_custom_target(${target})
    endif()
    add_dependencies(${target} ${cover_TARGETS})
  endforeach()
endfunction()
