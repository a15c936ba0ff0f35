# Writes COMMIT, or else the commit of the repository SOURCE, into OUTPUT; touches it only when that
# is another one. ", changed" behind it: with something that no commit holds. Nothing where SOURCE is
# no repository of its own.
function(git result)
  execute_process(COMMAND git -C ${SOURCE} ${ARGN}
    OUTPUT_VARIABLE text ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    set(text "")
  endif()
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

if(COMMIT STREQUAL "")
  git(top rev-parse --show-toplevel)
  file(REAL_PATH ${SOURCE} source)
  if(top STREQUAL source)
    git(COMMIT rev-parse --short=12 HEAD)
    git(changes status --porcelain --untracked-files=no)
    if(changes)
      string(APPEND COMMIT ", changed")
    endif()
  endif()
endif()
if(EXISTS ${OUTPUT})
  file(READ ${OUTPUT} written)
endif()
if(NOT EXISTS ${OUTPUT} OR NOT written STREQUAL COMMIT)
  file(WRITE ${OUTPUT} "${COMMIT}")
endif()
