# VELKOR_FMT and VELKOR_TOML are what those libraries are linked as. With VELKOR_BUNDLE or
# VELKOR_STATIC they are part of the programs: each release of Debian has them under another name.
# VELKOR_CAPSTONE always is part of them, and with velkor_capstone_machines, which a program links,
# as far as it is needed.
find_package(fmt REQUIRED)
find_package(tomlplusplus REQUIRED)
if(VELKOR_BUNDLE OR VELKOR_STATIC)
  set(VELKOR_FMT fmt::fmt-header-only)
  set(VELKOR_TOML)  # its headers alone will do
else()
  set(VELKOR_FMT fmt::fmt)
  set(VELKOR_TOML tomlplusplus::tomlplusplus)
endif()
find_library(VELKOR_CAPSTONE libcapstone.a REQUIRED)
find_path(CAPSTONE_INCLUDE capstone/capstone.h REQUIRED)
add_library(velkor_capstone_machines OBJECT ${CMAKE_CURRENT_LIST_DIR}/capstone_machines.cpp)
target_include_directories(velkor_capstone_machines SYSTEM PRIVATE ${CAPSTONE_INCLUDE})

if(VELKOR_STATIC)
  if(VELKOR_WINDOW)
    message(FATAL_ERROR "VELKOR_STATIC is for the command line: -DVELKOR_WINDOW=OFF")
  endif()
  add_link_options(-static$<$<BOOL:${VELKOR_HARDEN}>:-pie>)
endif()
