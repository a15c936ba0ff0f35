# VELKOR_FMT, VELKOR_TOML and VELKOR_CAPSTONE are what those libraries are linked as. With VELKOR_BUNDLE or
# VELKOR_STATIC they are part of the programs: each release of Debian has them under another name.
find_package(fmt REQUIRED)
find_package(tomlplusplus REQUIRED)
if(VELKOR_BUNDLE OR VELKOR_STATIC)
  set(VELKOR_FMT fmt::fmt-header-only)
  set(VELKOR_TOML)  # its headers alone will do
  find_library(CAPSTONE_ARCHIVE libcapstone.a REQUIRED)
  set(VELKOR_CAPSTONE ${CAPSTONE_ARCHIVE})
else()
  set(VELKOR_FMT fmt::fmt)
  set(VELKOR_TOML tomlplusplus::tomlplusplus)
  find_library(CAPSTONE_LIBRARY capstone REQUIRED)
  set(VELKOR_CAPSTONE ${CAPSTONE_LIBRARY})
endif()

if(VELKOR_STATIC)
  if(VELKOR_WINDOW)
    message(FATAL_ERROR "VELKOR_STATIC is for the command line: -DVELKOR_WINDOW=OFF")
  endif()
  add_link_options(-static$<$<BOOL:${VELKOR_HARDEN}>:-pie>)
endif()
