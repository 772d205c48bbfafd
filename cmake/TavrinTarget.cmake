# What every target of the project shares.

# Compiler options and sanitizers for one target.
function(tavrin_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow=local -Wnon-virtual-dtor
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

# A library below src/, all of whose includes are written from src/ on, as in "base/failure/Error.h". It
# precompiles the header PCH, or takes that of the library PCH_OF, of tavrin_widgets when none is named.
function(tavrin_library name)
  cmake_parse_arguments(arg "" "PCH;PCH_OF" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
  if(NOT arg_PCH_OF)
    set(arg_PCH_OF tavrin_widgets)
  endif()
  add_library(${name} ${arg_SOURCES})
  # Without a macro of its own each library can take the precompiled header of another.
  set_target_properties(${name} PROPERTIES DEFINE_SYMBOL "")
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE ${arg_PRIVATE_LINK})
  if(arg_PCH)
    target_precompile_headers(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/${arg_PCH})
  else()
    target_precompile_headers(${name} REUSE_FROM ${arg_PCH_OF})
  endif()
  tavrin_options(${name})
  # A call against the arrows does not link, although the programs would bring the other library along. The
  # sanitizers' own symbols come with the program.
  if(NOT TAVRIN_SANITIZE)
    target_link_options(${name} PRIVATE LINKER:-z,defs)
  endif()
endfunction()
