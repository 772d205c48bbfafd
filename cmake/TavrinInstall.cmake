# What is installed: libraries, headers, programs, and how other projects find them.

include(CMakePackageConfigHelpers)

set(TAVRIN_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)
set(TAVRIN_LIBEXEC_DIR ${CMAKE_INSTALL_LIBEXECDIR}/tvboundcontrols)
set(TAVRIN_PLUGIN_DIR ${CMAKE_INSTALL_LIBDIR}/qt6/plugins)
set(TAVRIN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/TVBoundControls)

# The headers of src/public_headers.txt, as they are installed.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/public_headers.txt)
file(STRINGS ${PROJECT_SOURCE_DIR}/src/public_headers.txt lines REGEX "^[A-Z]")
set(headers)
foreach(line IN LISTS lines)
  separate_arguments(words UNIX_COMMAND "${line}")
  list(GET words 1 header)
  get_filename_component(name ${header} NAME)
  set(to ${TAVRIN_INCLUDE_DIR}/TVBoundControls/${name})
  add_custom_command(OUTPUT ${to}
    COMMAND ${CMAKE_COMMAND} -DFROM=${PROJECT_SOURCE_DIR}/src/${header} -DTO=${to}
      -DLIST=${PROJECT_SOURCE_DIR}/src/public_headers.txt -P ${PROJECT_SOURCE_DIR}/cmake/PublicHeader.cmake
    DEPENDS ${PROJECT_SOURCE_DIR}/src/${header} ${PROJECT_SOURCE_DIR}/src/public_headers.txt
      ${PROJECT_SOURCE_DIR}/cmake/PublicHeader.cmake)
  list(APPEND headers ${to})
endforeach()
set(TAVRIN_PUBLIC_HEADERS ${headers})
add_custom_target(tavrin_public_headers ALL DEPENDS ${headers})
install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/TVBoundControls COMPONENT development)

# A component of the package: the library and the file by which find_package imports it. CONTENT names the package
# that the library itself is in.
function(tavrin_install_library target component content)
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${TAVRIN_INCLUDE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  add_dependencies(${target} tavrin_public_headers)
  target_compile_features(${target} INTERFACE cxx_std_20) # which the headers are written in
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${target} EXPORT TVBoundControls${component}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${content} NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  install(EXPORT TVBoundControls${component} NAMESPACE TVBoundControls:: DESTINATION ${TAVRIN_CMAKE_DIR}
    COMPONENT development)
endfunction()
tavrin_install_library(TVBoundControls Controls library)
tavrin_install_library(TVBoundControlsHost Host workbench)
tavrin_install_library(TVBoundControlsTesting Testing development)
if(TARGET TVBoundControlsDesigner)
  tavrin_install_library(TVBoundControlsForms Designer forms)
  file(RELATIVE_PATH to_libraries ${CMAKE_INSTALL_FULL_LIBDIR}/qt6/plugins/designer ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(TVBoundControlsDesigner PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
  install(TARGETS TVBoundControlsDesigner LIBRARY DESTINATION ${TAVRIN_PLUGIN_DIR}/designer COMPONENT designer)
endif()

configure_package_config_file(packaging/TVBoundControlsConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TVBoundControlsConfig.cmake INSTALL_DESTINATION ${TAVRIN_CMAKE_DIR}
  PATH_VARS TAVRIN_LIBEXEC_DIR TAVRIN_PLUGIN_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TVBoundControlsConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TVBoundControlsConfig.cmake
  ${PROJECT_BINARY_DIR}/TVBoundControlsConfigVersion.cmake
  DESTINATION ${TAVRIN_CMAKE_DIR} COMPONENT development)

# pkg-config's files say where they lie, so that they stay true wherever the prefix is moved to.
file(RELATIVE_PATH TAVRIN_PREFIX_FROM_PC
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
set(names TVBoundControls TVBoundControlsHost TVBoundControlsTesting)
if(TARGET TVBoundControlsForms)
  list(APPEND names TVBoundControlsForms)
endif()
foreach(name IN LISTS names)
  configure_file(packaging/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
endforeach()

# The workbench, with the program that decodes its thumbnails.
file(RELATIVE_PATH to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(workbench PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
install(TARGETS workbench RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT workbench)
install(TARGETS tavrin_thumbnailer
  RUNTIME DESTINATION ${TAVRIN_LIBEXEC_DIR} COMPONENT workbench)
install(FILES packaging/workbench/org.tavrin.workbench.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT workbench)
install(FILES packaging/workbench/org.tavrin.workbench.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT workbench)
install(FILES packaging/workbench/org.tavrin.workbench.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT workbench)
foreach(size IN ITEMS 16 24 32 48 64 128 256)
  install(FILES packaging/workbench/icons/${size}.png RENAME org.tavrin.workbench.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps COMPONENT workbench)
endforeach()

# The documents, and the examples that they quote.
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tvboundcontrols-doc COMPONENT documents)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tvboundcontrols-doc COMPONENT documents
  PATTERN build EXCLUDE PATTERN .gitignore EXCLUDE)
