# The headers are those that the native build has found, and checked, before.
set(PACKAGE_VERSION ${PACKAGE_FIND_VERSION})
set(PACKAGE_VERSION_COMPATIBLE TRUE)
