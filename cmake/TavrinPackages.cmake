# The Debian packages: cpack --config build/release/CPackConfig.cmake. Each content of the installation is a package.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tvboundcontrols)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The TVBoundControls developers")
set(CPACK_PACKAGE_CONTACT "The TVBoundControls developers <developers@tavrin.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development workbench documents)
if(TARGET TVBoundControlsDesigner)
  list(APPEND CPACK_COMPONENTS_ALL forms designer)
endif()
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/finish.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS # the packages' own libraries, whose packages are named below
  ${PROJECT_BINARY_DIR}/src/component ${PROJECT_BINARY_DIR}/src/host)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=") # libraries of one version belong together
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# tavrin_package(CONTENT NAME SECTION SUMMARY TEXT...)
function(tavrin_package content name section summary)
  string(TOUPPER ${content} key)
  list(JOIN ARGN "\n" text)
  foreach(pair IN ITEMS "PACKAGE_NAME=${name}" "PACKAGE_SECTION=${section}" "DESCRIPTION=${summary}\n${text}")
    string(REGEX MATCH "^[A-Z_]+" variable "${pair}")
    string(REGEX REPLACE "^[A-Z_]+=" "" value "${pair}")
    set(CPACK_DEBIAN_${key}_${variable} "${value}" PARENT_SCOPE)
  endforeach()
  # What every Debian package tells of itself.
  set(doc ${CMAKE_INSTALL_DATADIR}/doc/${name})
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/debian/copyright DESTINATION ${doc} COMPONENT ${content})
  install(FILES ${PROJECT_BINARY_DIR}/changelog.Debian.gz DESTINATION ${doc} COMPONENT ${content})
endfunction()

set(changelog ${PROJECT_SOURCE_DIR}/packaging/debian/changelog)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${changelog})
execute_process(COMMAND gzip -9nc ${changelog} OUTPUT_FILE ${PROJECT_BINARY_DIR}/changelog.Debian.gz)

set(same_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
tavrin_package(library libtvboundcontrols1 libs "data-entry controls for records applications"
  "Fields and sections that a person works with all day in a records application:"
  "pickers of employees, users, teams, agencies and offenses, fields over code"
  "tables, several codes in one field, relationships, attached files, spelling,"
  "and the place of an incident. A host drives them through three small contracts.")
tavrin_package(development libtvboundcontrols-dev libdevel "development files of TVBoundControls"
  "Headers, the files by which CMake and pkg-config find the library, and the"
  "component for tests of a host against a fake one.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "libtvboundcontrols1 ${same_version}, tvboundcontrols-workbench ${same_version}, qt6-base-dev")
if(TARGET TVBoundControlsDesigner)
  string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", libtvboundcontrolsforms1 ${same_version}")
endif()
tavrin_package(workbench tvboundcontrols-workbench database "records application over the reference host"
  "A records application that a person can open and work in: incidents with their"
  "offenses, officers, suspects and attached files. With it comes the reference"
  "host of TVBoundControls, which keeps records in a database.")
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_DEPENDS
  "libtvboundcontrols1 ${same_version}, libqt6sql6-sqlite, hunspell-en-us")
if(TARGET TVBoundControlsDesigner)
  tavrin_package(designer tvboundcontrols-designer devel "TVBoundControls in Qt Designer"
    "The plugin by which Qt Designer, and programs that load its forms, know the"
    "controls of TVBoundControls.")
  tavrin_package(forms libtvboundcontrolsforms1 libs "forms of Qt Designer with TVBoundControls"
    "Loads forms with the controls of TVBoundControls, as Qt Designer has saved them,"
    "while a program runs, and tells what is wrong with them.")
endif()
tavrin_package(documents tvboundcontrols-doc doc "documents of TVBoundControls"
  "The guide for the developer of a host, a page for each control, the reference"
  "of the headers, and an example host.")
foreach(content IN ITEMS LIBRARY DEVELOPMENT WORKBENCH FORMS DESIGNER)
  set(CPACK_DEBIAN_${content}_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
endforeach()
set(CPACK_DEBIAN_DESIGNER_PACKAGE_DEPENDS "libtvboundcontrols1 ${same_version}")
set(CPACK_DEBIAN_DESIGNER_PACKAGE_RECOMMENDS designer-qt6)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "tvboundcontrols-designer, tvboundcontrols-doc")
set(CPACK_DEBIAN_FORMS_PACKAGE_DEPENDS "libtvboundcontrols1 ${same_version}")
set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_ARCHITECTURE all)

include(CPack)
