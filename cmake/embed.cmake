# velkor_embed(TARGET SYMBOL FILE): links FILE's bytes into TARGET as
#   namespace velkor::embedded { extern const std::string_view SYMBOL; }
# The text is made anew whenever FILE changes.
function(velkor_embed target symbol file)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/embedded_${symbol}.cpp)
  add_custom_command(
    OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${file} -DOUTPUT=${output} -DSYMBOL=${symbol}
            -P ${PROJECT_SOURCE_DIR}/cmake/embed_file.cmake
    DEPENDS ${file} ${PROJECT_SOURCE_DIR}/cmake/embed_file.cmake
    VERBATIM)
  set_source_files_properties(${output} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  target_sources(${target} PRIVATE ${output})
endfunction()
