# velkor_commit: the library that says which commit the programs are built from, as
#   namespace velkor::embedded { extern const std::string_view commit; }
# Only the programs link it: a commit makes nothing else anew.
set(VELKOR_COMMIT "" CACHE STRING "Commit that is built, where the sources are no repository of git")
set(commitText ${CMAKE_CURRENT_BINARY_DIR}/commit.txt)
add_custom_target(velkor_commit_text
  COMMAND ${CMAKE_COMMAND} -DSOURCE=${PROJECT_SOURCE_DIR} -DOUTPUT=${commitText}
          -DCOMMIT=${VELKOR_COMMIT} -P ${PROJECT_SOURCE_DIR}/cmake/write_commit.cmake
  BYPRODUCTS ${commitText}
  VERBATIM)
add_library(velkor_commit STATIC)
velkor_embed(velkor_commit commit ${commitText})
add_dependencies(velkor_commit velkor_commit_text)
