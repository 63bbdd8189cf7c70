# The Darwin sources, compiled for this host against our own declarations and run over the faked C functions. On a Mac
# those functions are the system's own.
if(APPLE)
  return()
endif()

file(GLOB darwinSources CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/Sources/QuellinCore/Platform/Darwin/*.cpp
  ${PROJECT_SOURCE_DIR}/Sources/QuellinCore/IOReport/*.cpp)
file(GLOB fakeSources CONFIGURE_DEPENDS FakeDarwin/*.cpp)
file(GLOB darwinTests CONFIGURE_DEPENDS QuellinCore/Platform/Darwin/*Test.cpp QuellinCore/IOReport/*Test.cpp)
set(darwinIncludes ${PROJECT_SOURCE_DIR}/cmake/macos/include ${CMAKE_CURRENT_SOURCE_DIR}/FakeDarwin/include)

# The sources come first: of an inline function that several objects have, the linker keeps the first.
quellin_add_tests(DarwinTests SOURCES ${darwinSources} ${darwinTests} ${fakeSources} LIBRARIES QuellinCore)
# They see only the headers that they include, as on a Mac.
set(counted ${darwinSources} QuellinCore/Platform/Darwin/OwnedTest.cpp)
set_source_files_properties(${counted} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
# These files and no others count which of their lines and branches are executed (House/coverage.py). No build of a
# product contains this object code; the sanitizers' run has the same sources optimised.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND NOT QUELLIN_SANITIZERS)
  set_source_files_properties(${counted} PROPERTIES COMPILE_OPTIONS "-O0;--coverage;-fprofile-update=atomic")
  target_link_options(DarwinTests PRIVATE --coverage)
endif()
target_include_directories(DarwinTests SYSTEM PRIVATE ${darwinIncludes})

# The HID functions are looked up by name in the process itself, and the fakes watch over each look-up.
set_target_properties(DarwinTests PROPERTIES ENABLE_EXPORTS ON)
target_link_options(DarwinTests PRIVATE LINKER:--wrap=dlopen,--wrap=dlsym,--wrap=dlclose,--wrap=dlerror)

# The IOReport library is a real shared object, found by name through the run path of the tests. The older kind of
# run path (no new dtags) also serves where a sanitizer's runtime does the opening.
add_library(FakeIOReport MODULE FakeDarwin/IOReportLibrary/IOReport.cpp)
target_include_directories(FakeIOReport PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_include_directories(FakeIOReport SYSTEM PRIVATE ${darwinIncludes})
target_link_libraries(FakeIOReport PRIVATE QuellinSettings)
set(fakeLibraries ${CMAKE_BINARY_DIR}/lib/FakeDarwin)
set_target_properties(FakeIOReport PROPERTIES
  OUTPUT_NAME IOReport PREFIX lib SUFFIX .dylib LIBRARY_OUTPUT_DIRECTORY ${fakeLibraries})
add_dependencies(DarwinTests FakeIOReport)
set_target_properties(DarwinTests PROPERTIES BUILD_RPATH ${fakeLibraries})
target_link_options(DarwinTests PRIVATE LINKER:--disable-new-dtags)

# Each misuse of an owned handle has to be refused by the compiler, and the same file without it accepted.
set(misuseSource ${CMAKE_CURRENT_SOURCE_DIR}/QuellinCore/Platform/Darwin/OwnedMisuse.cpp)
file(STRINGS ${misuseSource} misuseLines REGEX "defined\\(MISUSE_")
foreach(line IN LISTS misuseLines)
  string(REGEX MATCH "MISUSE_[A-Za-z]+" misuse "${line}")
  add_test(NAME OwnedMisuse.${misuse} COMMAND ${CMAKE_COMMAND}
    -D compiler=${CMAKE_CXX_COMPILER} -D source=${misuseSource} -D misuse=${misuse}
    "-D includes=${PROJECT_SOURCE_DIR}/Sources;${darwinIncludes}"
    -P ${CMAKE_CURRENT_SOURCE_DIR}/expect_misuse_refused.cmake)
endforeach()
