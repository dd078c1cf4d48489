# Installs headers, and the headers of the project that they include, under include/olmkit/ with
# their paths in the source tree, by which they include each other:
#   olmkit_install_headers(host/session/Session.h ...)
function(olmkit_install_headers)
  set(waiting ${ARGN})
  set(taken "")
  while(waiting)
    list(POP_FRONT waiting header)
    if(header IN_LIST taken)
      continue()
    endif()
    list(APPEND taken ${header})
    file(STRINGS ${PROJECT_SOURCE_DIR}/${header} included REGEX "^#include \"")
    list(TRANSFORM included REPLACE "^#include \"([^\"]*)\".*" "\\1")
    list(APPEND waiting ${included})

    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${PROJECT_SOURCE_DIR}/${header}
      DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/olmkit/${folder})
    set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY
      CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${header})
  endwhile()
endfunction()
