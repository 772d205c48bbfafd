# What every target of the project shares.

# Compiler options and sanitizers for one target.
function(tavrin_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic
                                           $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow> -Wnon-virtual-dtor
                                           -Woverloaded-virtual -Wold-style-cast -Wcast-qual)
  target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
                                               QT_NO_FOREACH QT_NO_KEYWORDS)
  if(TAVRIN_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(TAVRIN_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all
                                             -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=address,undefined)
  endif()
  if(TAVRIN_TRACE)
    target_compile_definitions(${target} PRIVATE TAVRIN_TRACE)
  endif()
endfunction()

# A folder of src/ as a library: all its includes are written from src/ on, as in "base/failure/Error.h". It is
# archived: the libraries that are installed are made of several folders (tavrin_shared), and a test program takes
# those that it needs (tavrin_link). NEEDS names the folders that it calls, LINK and PRIVATE_LINK other libraries,
# Qt6::Widgets when none is named. It precompiles the header PCH, or takes that of the library PCH_OF, of
# tavrin_widgets when none is named. RESOURCES says that it holds some: programs then take all of it, since nothing
# calls resources by a symbol.
function(tavrin_library name)
  cmake_parse_arguments(arg "RESOURCES" "PCH;PCH_OF" "SOURCES;NEEDS;LINK;PRIVATE_LINK" ${ARGN})
  if(NOT arg_PCH_OF)
    set(arg_PCH_OF tavrin_widgets)
  endif()
  if(NOT arg_LINK)
    set(arg_LINK Qt6::Widgets)
  endif()
  add_library(${name} STATIC ${arg_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE ${arg_PRIVATE_LINK})
  if(arg_PCH)
    target_precompile_headers(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/${arg_PCH})
  else()
    target_precompile_headers(${name} REUSE_FROM ${arg_PCH_OF})
  endif()
  tavrin_options(${name})
  set_property(TARGET ${name} PROPERTY TAVRIN_NEEDS ${arg_NEEDS})
  set_property(TARGET ${name} PROPERTY TAVRIN_RESOURCES ${arg_RESOURCES})
  tavrin_keep_arrows(${name})
endfunction()

# The folders with all that they need, each in front of those that it calls.
function(tavrin_closure result)
  set(closure)
  foreach(folder IN LISTS ARGN)
    get_target_property(needs ${folder} TAVRIN_NEEDS)
    if(needs)
      tavrin_closure(below ${needs})
      list(REMOVE_ITEM closure ${below})
      list(APPEND closure ${below})
    endif()
    list(REMOVE_ITEM closure ${folder})
    list(PREPEND closure ${folder})
  endforeach()
  set(${result} ${closure} PARENT_SCOPE)
endfunction()

# Links a program or library with folders of src/ and all that these need.
function(tavrin_link target)
  tavrin_closure(folders ${ARGN})
  foreach(folder IN LISTS folders)
    get_target_property(resources ${folder} TAVRIN_RESOURCES)
    if(resources)
      target_sources(${target} PRIVATE $<TARGET_OBJECTS:${folder}>)
    endif()
  endforeach()
  target_link_libraries(${target} PRIVATE ${folders})
endfunction()

# A call against the arrows does not link, although the programs would bring the other folder along: the folder is
# linked once with what it needs alone, into a file that nothing uses. The sanitizers' own symbols come with the
# program.
function(tavrin_keep_arrows folder)
  if(TAVRIN_SANITIZE OR NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
    return()
  endif()
  add_library(${folder}_arrows MODULE $<TARGET_OBJECTS:${folder}>)
  set_target_properties(${folder}_arrows PROPERTIES LINKER_LANGUAGE CXX
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/arrows AUTOMOC OFF AUTORCC OFF)
  get_target_property(needs ${folder} TAVRIN_NEEDS)
  if(needs)
    tavrin_closure(below ${needs})
    target_link_libraries(${folder}_arrows PRIVATE ${below})
  endif()
  target_link_libraries(${folder}_arrows PRIVATE $<TARGET_PROPERTY:${folder},LINK_LIBRARIES>)
  target_link_options(${folder}_arrows PRIVATE LINKER:-z,defs LINKER:--strip-all)
endfunction()

# A shared library that is installed, made of the folders FOLDERS. LINK names libraries that its users link too.
function(tavrin_shared name)
  cmake_parse_arguments(arg "" "EXPORT_NAME" "FOLDERS;LINK" ${ARGN})
  add_library(${name} SHARED)
  foreach(folder IN LISTS arg_FOLDERS)
    target_sources(${name} PRIVATE $<TARGET_OBJECTS:${folder}>)
    target_link_libraries(${name} PRIVATE $<TARGET_PROPERTY:${folder},LINK_LIBRARIES>)
  endforeach()
  target_link_libraries(${name} PUBLIC ${arg_LINK})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX AUTOMOC OFF AUTORCC OFF
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} EXPORT_NAME ${arg_EXPORT_NAME})
  tavrin_options(${name})
  if(NOT TAVRIN_SANITIZE) # whose own symbols come with the program
    target_link_options(${name} PRIVATE LINKER:-z,defs)
  endif()
  add_library(TVBoundControls::${arg_EXPORT_NAME} ALIAS ${name})
endfunction()
