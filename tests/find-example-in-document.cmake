# Fails unless the text of EXAMPLE stands in DOCUMENT, word for word.

cmake_minimum_required(VERSION 3.21)

file(READ "${DOCUMENT}" document)
file(READ "${EXAMPLE}" example)
string(FIND "${document}" "${example}" position)
if(position EQUAL -1)
  message(FATAL_ERROR "${DOCUMENT} does not show the code of ${EXAMPLE} as it stands")
endif()
