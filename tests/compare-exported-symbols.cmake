# Fails unless LIBRARY exports exactly the symbols listed in EXPECTED (demangled, sorted, one a line).
# NM is the tool that lists symbols.

cmake_minimum_required(VERSION 3.21)

execute_process(
  COMMAND "${NM}" --dynamic --demangle --defined-only --format=posix "${LIBRARY}"
  OUTPUT_VARIABLE listing
  COMMAND_ERROR_IS_FATAL ANY)

# Each line: a name, which may contain blanks, a letter for the type, an address and a size.
string(REGEX REPLACE ";" "\\\\;" listing "${listing}")
string(REGEX REPLACE "\n" ";" lines "${listing}")
set(exported "")
foreach(line IN LISTS lines)
  string(REGEX REPLACE " [A-Za-z] [0-9a-f]+( [0-9a-f]*)?$" "" name "${line}")
  if(name)
    list(APPEND exported "${name}")
  endif()
endforeach()
list(REMOVE_DUPLICATES exported) # the two bodies of a constructor have one name
list(SORT exported)

file(STRINGS "${EXPECTED}" expected)
list(FILTER expected EXCLUDE REGEX "^#")
list(SORT expected)

foreach(name IN LISTS exported)
  if(NOT name IN_LIST expected)
    message(SEND_ERROR "exported, but not listed: ${name}")
  endif()
endforeach()
foreach(name IN LISTS expected)
  if(NOT name IN_LIST exported)
    message(SEND_ERROR "listed, but not exported: ${name}")
  endif()
endforeach()
