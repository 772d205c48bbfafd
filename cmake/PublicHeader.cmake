# cmake -DFROM=... -DTO=... -DLIST=... -P PublicHeader.cmake: writes a header of src/ as it is installed, with the
# includes of its neighbours by their names alone. One that includes a header that is not installed is refused.

cmake_minimum_required(VERSION 3.25)
file(READ ${FROM} text)
file(STRINGS ${LIST} public REGEX "^[A-Z]")
list(TRANSFORM public REPLACE "^[A-Za-z]+ " "")
string(REGEX MATCHALL "#include \"[^\"]+\"" includes "${text}")
foreach(include IN LISTS includes)
  string(REGEX REPLACE "#include \"(.+)\"" "\\1" header "${include}")
  if(NOT header IN_LIST public)
    message(FATAL_ERROR "${FROM} is installed and includes ${header}, which is not")
  endif()
  get_filename_component(name ${header} NAME)
  string(REPLACE "${include}" "#include \"${name}\"" text "${text}")
endforeach()
file(WRITE ${TO} "${text}")
