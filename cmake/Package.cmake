# Packages for Debian: `cpack --config build/release/CPackConfig.cmake -B build/packages`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quellin)
set(CPACK_PACKAGE_VENDOR Quellin)
set(CPACK_PACKAGE_CONTACT "The Quellin maintainers <maintainers@quellin.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Power, battery, heat and fans, and the energy of recorded sessions")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL program development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME quellin)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libquellincore-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libboost1.81-dev | libboost-dev (>= 1.81), libsimdjson-dev, libsqlite3-dev, libzstd-dev, libicu-dev")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
"Says what the machine's power, battery, heat and fans are doing, which
physical quantity each figure in watts is, and how much energy a stretch of
work took. The tool for readings that need root is installed without its
set-user-ID bit.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"Headers and archives of the library behind quellin.")
include(CPack)
