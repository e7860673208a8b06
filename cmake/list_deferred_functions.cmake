# Writes a line DEFERRED(number, name) for each function that the archives CALLERS call and one of the
# shared LIBRARIES defines.

execute_process(COMMAND "${NM}" --undefined-only --format=posix ${CALLERS}
  OUTPUT_VARIABLE called ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[A-Za-z0-9_]+ U" called "${called}")
list(REMOVE_DUPLICATES called)
execute_process(COMMAND "${NM}" --dynamic --defined-only --format=posix ${LIBRARIES}
  OUTPUT_VARIABLE defined COMMAND_ERROR_IS_FATAL ANY)

# The names with their versions cut off, between line ends.
string(REGEX REPLACE "@[^ \n]*" "" defined "\n${defined}")
set(lines "")
set(number 0)
foreach(name IN LISTS called)
  string(REGEX REPLACE " U$" "" name "${name}")
  string(REGEX MATCH "\n${name} ([A-Z]) " found "${defined}")
  if(NOT found)
    continue()
  endif()
  if(NOT CMAKE_MATCH_1 STREQUAL "T")
    message(FATAL_ERROR "${name} is no function, and cannot be deferred")
  endif()
  string(APPEND lines "DEFERRED(${number}, ${name})\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE "${OUTPUT}" "${lines}")
