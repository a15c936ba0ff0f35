# Builds for 64-bit Windows on Debian. Libraries of which only headers are needed come from Debian's
# packages of this machine (see the modules beside this file); scripts/windows_libraries builds the
# others.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

get_filename_component(repository ${CMAKE_CURRENT_LIST_DIR}/../.. ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${repository}/build/windows-libraries /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})

# The newest functions that are used came with Windows 7.
add_compile_definitions(_WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX)
# The program needs nothing beside it, and its bytes do not tell when and where it was built.
add_compile_options(-ffile-prefix-map=${repository}=.)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")

find_program(wine NAMES wine64 wine PATHS /usr/lib/wine NO_CACHE)
if(wine)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${wine})
endif()
