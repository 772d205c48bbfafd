# The reference: the installed headers and the pages of docs/ as one site, in html/ of the build. Made by Doxygen;
# without it all else is built.

find_package(Doxygen 1.9.4 QUIET)
find_package(Python3 QUIET COMPONENTS Interpreter)
if(NOT DOXYGEN_FOUND OR NOT Python3_FOUND)
  message(STATUS "Doxygen 1.9.4 or Python 3 is not here: the reference is left out of the documents")
  return()
endif()

set(reference_sources ${PROJECT_SOURCE_DIR}/packaging/reference)
# Another Doxygen may warn of other things, which must not keep anybody from building the library.
set(reference_warnings NO)
if(DOXYGEN_VERSION MATCHES "^1\\.9\\.4")
  set(reference_warnings FAIL_ON_WARNINGS)
endif()
configure_file(${reference_sources}/Doxyfile.in ${PROJECT_BINARY_DIR}/reference/Doxyfile @ONLY)

file(GLOB_RECURSE contents CONFIGURE_DEPENDS
  docs/*.md docs/*.png examples/* ${reference_sources}/*.py ${reference_sources}/*.css ${reference_sources}/*.dox
  ${reference_sources}/*.xml)
list(FILTER contents EXCLUDE REGEX "/(build|__pycache__)/")
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/html/index.html
  COMMAND ${Python3_EXECUTABLE} -B -X utf8 ${reference_sources}/make.py
    ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR} $<TARGET_FILE:Doxygen::doxygen>
  DEPENDS ${contents} data/README.md src/public_headers.txt tavrin_public_headers ${TAVRIN_PUBLIC_HEADERS}
    ${PROJECT_BINARY_DIR}/reference/Doxyfile
  COMMENT "Making the reference in html/")
add_custom_target(documents ALL DEPENDS ${PROJECT_BINARY_DIR}/html/index.html)
install(DIRECTORY ${PROJECT_BINARY_DIR}/html DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tvboundcontrols-doc
  COMPONENT documents)
install(FILES packaging/debian/doc-base RENAME tvboundcontrols-doc DESTINATION ${CMAKE_INSTALL_DATADIR}/doc-base
  COMPONENT documents)
