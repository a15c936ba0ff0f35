# What every target of this project is compiled with. CMAKE_COMPILE_WARNING_AS_ERROR, which
# scripts/test sets, makes the warnings errors.
add_library(velkor_compile INTERFACE)
target_include_directories(velkor_compile INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(velkor_compile INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wold-style-cast -Wcast-qual -Wformat=2 -Wundef)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # g++ 12 sees overlaps, overruns and uninitialised values in its own std::string that are not
  # there.
  set(falseAlarms -Wno-maybe-uninitialized -Wno-array-bounds -Wno-stringop-overflow
                  -Wno-stringop-overread)
  target_compile_options(velkor_compile INTERFACE
    -Wno-restrict "$<$<CONFIG:Release>:${falseAlarms}>")
endif()
# velkor_compile_quickly(TARGET): for what no user gets, the tests and tools: not optimised, and not
# itself searched for undefined behaviour. Either would take as long again to compile.
function(velkor_compile_quickly target)
  set_target_properties(${target} PROPERTIES VELKOR_QUICKLY ON)
endfunction()
set(quickly $<BOOL:$<TARGET_PROPERTY:VELKOR_QUICKLY>>)
# Under the sanitizers, and for Windows, where an object file holds fewer functions, as the rest.
if(NOT WIN32 AND NOT VELKOR_SANITIZE)
  target_compile_options(velkor_compile INTERFACE $<${quickly}:-O0>)
endif()
if(VELKOR_SANITIZE)
  target_compile_options(velkor_compile INTERFACE
    -fsanitize=${VELKOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1
    ${falseAlarms}
    $<$<CXX_COMPILER_ID:Clang>:-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/sanitizer_ignore.txt>
    $<${quickly}:-fno-sanitize=undefined>)
  target_link_options(velkor_compile INTERFACE -fsanitize=${VELKOR_SANITIZE})
endif()
if(VELKOR_COVERAGE)
  target_compile_options(velkor_compile INTERFACE --coverage -fprofile-update=atomic -O0)
  target_link_options(velkor_compile INTERFACE --coverage)
endif()
