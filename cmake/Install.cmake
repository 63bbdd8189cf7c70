# Where everything goes: programs, library, headers, and what CMake and pkg-config need to find them.
include(CMakePackageConfigHelpers)
set(configFolder ${CMAKE_INSTALL_LIBDIR}/cmake/QuellinCore)

install(TARGETS quellin RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
# Without its set-user-ID bit: whether anybody may read the sensors as root is the administrator's decision.
install(TARGETS QuellinHelper RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/quellin COMPONENT program)
install(TARGETS QuellinCore QuellinSessions EXPORT QuellinCoreTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
if(QUELLIN_SHARED)
  install(TARGETS QuellinCoreShared QuellinSessionsShared EXPORT QuellinCoreSharedTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT shared)
  install(EXPORT QuellinCoreSharedTargets NAMESPACE QuellinCore:: DESTINATION ${configFolder} COMPONENT shared)
endif()

install(DIRECTORY Sources/QuellinCore DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN "*.h" REGEX "${QUELLIN_INTERNAL_PATH}" EXCLUDE)

install(EXPORT QuellinCoreTargets NAMESPACE QuellinCore:: DESTINATION ${configFolder} COMPONENT development)
configure_package_config_file(cmake/QuellinCoreConfig.cmake.in QuellinCoreConfig.cmake
  INSTALL_DESTINATION ${configFolder})
write_basic_package_version_file(QuellinCoreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuellinCoreConfig.cmake ${PROJECT_BINARY_DIR}/QuellinCoreConfigVersion.cmake
  DESTINATION ${configFolder} COMPONENT development)
# The file finds its own prefix, so that the tree may be moved.
set(requiresPrivate "simdjson sqlite3 libzstd")
set(libsPrivate -pthread)
if(APPLE)
  string(APPEND libsPrivate " -framework CoreFoundation -framework IOKit -framework Foundation -lobjc")
else()
  string(APPEND requiresPrivate " icu-i18n icu-uc")
endif()
file(RELATIVE_PATH prefixFromPkgConfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/quellincore.pc.in quellincore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quellincore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES LICENSE THIRD_PARTY.md README.md docs/formats.md docs/security.md docs/linux.md docs/macos.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program)
  install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/libquellincore-dev COMPONENT development)
endif()

# The manual page and the completions, as the program itself prints them.
if(NOT CMAKE_CROSSCOMPILING)
  set(printed ${PROJECT_BINARY_DIR}/printed)
  add_custom_command(OUTPUT ${printed}/quellin.1 ${printed}/quellin ${printed}/_quellin ${printed}/quellin.fish
    COMMAND ${CMAKE_COMMAND} -E make_directory ${printed}
    COMMAND quellin manual > ${printed}/quellin.1
    COMMAND quellin completions bash > ${printed}/quellin
    COMMAND quellin completions zsh > ${printed}/_quellin
    COMMAND quellin completions fish > ${printed}/quellin.fish
    DEPENDS quellin VERBATIM)
  add_custom_target(printed ALL DEPENDS ${printed}/quellin.1)
  install(FILES ${printed}/quellin.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
  install(FILES ${printed}/quellin DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)
  install(FILES ${printed}/_quellin DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT program)
  install(FILES ${printed}/quellin.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT program)
endif()

# Recording from the start of the machine, or of the desktop.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  install(FILES packaging/quellin-record.service DESTINATION lib/systemd/system COMPONENT program)
elseif(APPLE)
  configure_file(packaging/org.quellin.record.plist.in org.quellin.record.plist @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/org.quellin.record.plist DESTINATION ${CMAKE_INSTALL_DATADIR}/quellin COMPONENT program)
endif()
