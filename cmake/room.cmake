# velkor_compile_at_once(TARGET): with VELKOR_ROOM_AT_ONCE, one compilation reads the headers for all
# files of the target.
function(velkor_compile_at_once target)
  set_target_properties(${target} PROPERTIES
    UNITY_BUILD ${VELKOR_ROOM_AT_ONCE} UNITY_BUILD_BATCH_SIZE 0)
endfunction()

# velkor_sources(VARIABLE): all .cpp files of the current folder and of the folders in it, but of
# folders posix and windows those of the host alone.
function(velkor_sources variable)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  set(others windows)
  if(WIN32)
    set(others posix)
  endif()
  list(FILTER sources EXCLUDE REGEX "^${CMAKE_CURRENT_SOURCE_DIR}/(.*/)?${others}/")
  set(${variable} ${sources} PARENT_SCOPE)
endfunction()

# velkor_room(NAME DEPENDS rooms...): the library target of one folder of src/.
function(velkor_room name)
  cmake_parse_arguments(ROOM "" "" "DEPENDS" ${ARGN})
  velkor_sources(sources)
  add_library(velkor_${name} STATIC ${sources})
  velkor_compile_at_once(velkor_${name})
  target_link_libraries(velkor_${name} PUBLIC velkor_compile)
  foreach(room ${ROOM_DEPENDS})
    target_link_libraries(velkor_${name} PUBLIC velkor_${room})
  endforeach()
endfunction()

# What nearly every test includes.
set(VELKOR_TEST_HEADERS <gtest/gtest.h> <map> <memory> <random> <string> <string_view> <vector>)

# velkor_test(NAME DEPENDS rooms... LABELS labels...): the test program of one folder of tests/ and
# the folders in it.
function(velkor_test name)
  cmake_parse_arguments(TEST "" "" "DEPENDS;LABELS" ${ARGN})
  velkor_sources(sources)
  add_executable(${name}_test ${sources})
  velkor_compile_at_once(${name}_test)
  velkor_compile_quickly(${name}_test)
  target_include_directories(${name}_test PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  if("ui" IN_LIST TEST_DEPENDS)  # the toolkit has options of its own
    target_precompile_headers(${name}_test PRIVATE ${VELKOR_TEST_HEADERS})
  else()
    target_precompile_headers(${name}_test REUSE_FROM velkor_test_support)
  endif()
  target_link_libraries(${name}_test PRIVATE velkor_compile velkor_test_support GTest::gtest_main)
  foreach(room ${TEST_DEPENDS})
    target_link_libraries(${name}_test PRIVATE velkor_${room})
  endforeach()
  add_test(NAME ${name} COMMAND ${name}_test)
  set_tests_properties(${name} PROPERTIES LABELS "${TEST_LABELS}" TIMEOUT 600)
endfunction()
