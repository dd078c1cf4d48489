# Everything that `cmake --install` installs. The installed tree may be moved: the program finds its
# library, the library its module, and the package files everything by paths relative to themselves.
include(CMakePackageConfigHelpers)
foreach(folder IN ITEMS BINDIR LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE ${CMAKE_INSTALL_${folder}})
    message(FATAL_ERROR "CMAKE_INSTALL_${folder} must be relative: the installed tree may be moved")
  endif()
endforeach()

# Where other projects find the headers: #include "host/session/Session.h", as in the source tree.
set(include_folder ${CMAKE_INSTALL_INCLUDEDIR}/olmkit)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/olmkit)
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The headers that a host of the module includes.
add_library(olmfilter_headers INTERFACE)
add_library(olmkit::filter ALIAS olmfilter_headers)
set_target_properties(olmfilter_headers PROPERTIES EXPORT_NAME filter)
target_include_directories(olmfilter_headers INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${include_folder}>)
olmkit_install_headers(filter/olmfilter.h)

# The module, which is loaded and not linked: $<TARGET_FILE:olmkit::module> is its path.
set_target_properties(olmfilter PROPERTIES EXPORT_NAME module)
install(TARGETS olmfilter olmfilter_headers EXPORT olmkit
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/olmkit)
set(pkgconfig_files olmkit-filter.pc)

if(OLMKIT_BUILD_HOST)
  add_library(olmkit::host ALIAS olmhost)
  set_target_properties(olmhost PROPERTIES EXPORT_NAME host)
  install(TARGETS olmhost EXPORT olmkit
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION ${include_folder})
  olmkit_install_headers(
    host/check/FileCheck.h
    host/message/Message.h host/message/MessageSpool.h host/message/OneOffEntryId.h
    host/message/PropertyNames.h host/message/PropertyType.h host/message/Recurrence.h
    host/session/LibraryVersions.h host/session/Session.h)
  list(APPEND pkgconfig_files olmkit.pc)
endif()

if(OLMKIT_BUILD_CLI)
  install(TARGETS olmkit RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  set(made ${PROJECT_BINARY_DIR}/share)
  install(FILES ${made}/olmkit.bash RENAME olmkit
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES ${made}/_olmkit DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  install(FILES ${made}/olmkit.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
  install(FILES ${made}/olmkit.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

# find_package(olmkit). A version 0.x promises nothing to programs written for another 0.y.
configure_package_config_file(cmake/olmkitConfig.cmake.in ${PROJECT_BINARY_DIR}/olmkitConfig.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/olmkitConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(EXPORT olmkit FILE olmkitTargets.cmake NAMESPACE olmkit:: DESTINATION ${package_folder})
install(FILES ${PROJECT_BINARY_DIR}/olmkitConfig.cmake
  ${PROJECT_BINARY_DIR}/olmkitConfigVersion.cmake DESTINATION ${package_folder})

# pkg-config.
file(RELATIVE_PATH OLMKIT_PKGCONFIG_TO_PREFIX
  ${CMAKE_INSTALL_PREFIX}/${pkgconfig_folder} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" OLMKIT_PKGCONFIG_TO_PREFIX ${OLMKIT_PKGCONFIG_TO_PREFIX})
foreach(file IN LISTS pkgconfig_files)
  configure_file(cmake/${file}.in ${PROJECT_BINARY_DIR}/${file} @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${file} DESTINATION ${pkgconfig_folder})
endforeach()
