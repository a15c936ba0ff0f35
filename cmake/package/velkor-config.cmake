# velkor for builds with CMake:
#
#   find_package(velkor REQUIRED)
#   velkor_check(TARGET firmware CONFIG velkor.toml)
#
# velkor_check(TARGET target CONFIG file [WITH targets...] [BASELINE file] [ARGUMENTS words...]):
# compiles and links the target, and the libraries WITH that are built beside it, so that the compiler
# tells what each function takes and calls; then every build ends with velkor-cli check, and fails
# where a stack is too small. The check is a target of its own, TARGET_stack. Its input, which FILE
# names, is the folder that the target is built into. ARGUMENTS are further words for velkor-cli check.
include_guard(GLOBAL)

get_filename_component(velkor_prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
find_program(VELKOR_CLI velkor-cli HINTS "${velkor_prefix}/bin")
if(NOT VELKOR_CLI)
  set(velkor_FOUND FALSE)
  set(velkor_NOT_FOUND_MESSAGE "velkor-cli is not beside this package; set VELKOR_CLI")
endif()

function(_velkor_tell_calls target)
  foreach(language C CXX)
    if(CMAKE_${language}_COMPILER_ID STREQUAL GNU
       AND CMAKE_${language}_COMPILER_VERSION VERSION_LESS 10)
      message(FATAL_ERROR "velkor_check: GCC tells calls from version 10 on, this is "
                          "${CMAKE_${language}_COMPILER_VERSION}")
    endif()
    target_compile_options(${target} PRIVATE
      "$<$<COMPILE_LANG_AND_ID:${language},GNU>:-fcallgraph-info=su,da>")
    # With optimisation at link time, functions become code there.
    get_target_property(type ${target} TYPE)
    if(NOT type MATCHES "STATIC_LIBRARY|OBJECT_LIBRARY")
      target_link_options(${target} PRIVATE
        "$<$<LINK_LANG_AND_ID:${language},GNU>:-fcallgraph-info=su,da>")
    endif()
  endforeach()
endfunction()

function(velkor_check)
  cmake_parse_arguments(CHECK "" "TARGET;CONFIG;BASELINE" "WITH;ARGUMENTS" ${ARGN})
  if(CHECK_UNPARSED_ARGUMENTS OR NOT CHECK_TARGET OR NOT CHECK_CONFIG)
    message(FATAL_ERROR "velkor_check(TARGET target CONFIG file [WITH targets...] [BASELINE file] "
                        "[ARGUMENTS words...])")
  endif()
  foreach(target ${CHECK_TARGET} ${CHECK_WITH})
    _velkor_tell_calls(${target})
  endforeach()
  set(words ${CHECK_ARGUMENTS})
  if(CHECK_BASELINE)
    get_filename_component(baseline "${CHECK_BASELINE}" ABSOLUTE)
    list(PREPEND words --baseline "${baseline}")
  endif()
  get_filename_component(config "${CHECK_CONFIG}" ABSOLUTE)
  add_custom_target(${CHECK_TARGET}_stack ALL
    COMMAND "${VELKOR_CLI}" check "${config}" --quiet ${words}
    DEPENDS ${CHECK_TARGET} ${CHECK_WITH}
    COMMENT "Checking the stacks of ${CHECK_TARGET}"
    VERBATIM)
endfunction()
