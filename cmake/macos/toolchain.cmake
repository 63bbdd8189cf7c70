# Builds Mach-O for arm64 macOS on Linux: our own declarations stand in for the system headers that the
# compiler does not bundle, and stubs (*.tbd) for the libraries that only a Mac has. See docs/macos.md.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 21)
set(CMAKE_SYSTEM_PROCESSOR arm64)

set(here ${CMAKE_CURRENT_LIST_DIR})
set(CMAKE_CXX_COMPILER ${here}/zig-c++)
set(CMAKE_AR ${here}/zig-ar CACHE FILEPATH "Archiver of the cross build")
set(CMAKE_CXX_ARCHIVE_CREATE "<CMAKE_AR> qcs <TARGET> <LINK_FLAGS> <OBJECTS>")
set(CMAKE_CXX_ARCHIVE_APPEND "<CMAKE_AR> qs <TARGET> <LINK_FLAGS> <OBJECTS>")
set(CMAKE_CXX_ARCHIVE_FINISH "")
# CMake insists on these two; static archives and executables never need them.
set(CMAKE_RANLIB ${CMAKE_COMMAND} CACHE FILEPATH "Not used: the archiver writes the index")
set(CMAKE_INSTALL_NAME_TOOL ${CMAKE_COMMAND} CACHE FILEPATH "Not used: nothing is relocated")

# Headers in place of the system's, then those of the third-party packages that build.sh linked one by one.
set(thirdPartyHeaders ${here}/../../build/macos/include)
cmake_path(NORMAL_PATH thirdPartyHeaders)
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${here}/include ${thirdPartyHeaders})
# A Mac supplies its own C++ library: what that lacks at the minimum version must not compile here either.
set(CMAKE_CXX_FLAGS_INIT "-U_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-F${here}/frameworks -L${here}/lib")

# Nothing of the host may be found by accident: packages come from the folder beside this file.
set(CMAKE_FIND_ROOT_PATH ${here})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_FIND_PACKAGE_PREFER_CONFIG ON)
set(CMAKE_PREFIX_PATH /packages)
