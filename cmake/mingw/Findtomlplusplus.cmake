include(${CMAKE_CURRENT_LIST_DIR}/debian_headers.cmake)
velkor_debian_headers(tomlplusplus::tomlplusplus toml++)
set(tomlplusplus_FOUND TRUE)
