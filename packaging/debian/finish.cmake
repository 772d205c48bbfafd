# Runs over the files of the packages before they are packed. Below /usr the loader finds the libraries by itself.
file(GLOB_RECURSE files ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(file IN LISTS files)
  if(NOT IS_SYMLINK ${file} AND file MATCHES "/(bin|lib|libexec)/" AND NOT file MATCHES "\\.(h|cmake|pc|a|svg|xml)$")
    file(RPATH_REMOVE FILE ${file})
  endif()
endforeach()
