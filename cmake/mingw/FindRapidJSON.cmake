include(${CMAKE_CURRENT_LIST_DIR}/debian_headers.cmake)
velkor_debian_headers(RapidJSON rapidjson)
link_libraries(RapidJSON)  # as on other hosts, it is found without being named
set(RapidJSON_FOUND TRUE)
