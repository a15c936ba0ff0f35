include(${CMAKE_CURRENT_LIST_DIR}/debian_headers.cmake)
velkor_debian_headers(CLI11::CLI11 CLI)
set(CLI11_FOUND TRUE)
