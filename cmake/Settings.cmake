# The flags of our own code. Third-party headers come in as system headers and stay quiet.
add_library(QuellinSettings INTERFACE)
target_include_directories(QuellinSettings INTERFACE ${PROJECT_SOURCE_DIR}/Sources)
target_compile_options(QuellinSettings INTERFACE
  -Wall -Wextra -Wpedantic $<$<BOOL:${QUELLIN_WARNINGS_AS_ERRORS}>:-Werror> -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-align
  -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef -Wdouble-promotion -Wimplicit-fallthrough
  $<$<NOT:$<BOOL:$<TARGET_PROPERTY:QUELLIN_FOR_SHARING>>>:-fvisibility=hidden> -fstack-protector-strong
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op>)

# clang calls std::stable_sort deprecated for what libstdc++ 12 does inside it.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND NOT APPLE)
  target_compile_options(QuellinSettings INTERFACE -Wno-deprecated-declarations)
endif()

if(QUELLIN_SANITIZERS)
  # GCC cannot follow the fences of Boost.Asio under the thread sanitizer, and says so as a warning.
  if(QUELLIN_SANITIZERS STREQUAL "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(QuellinSettings INTERFACE -Wno-tsan)
  endif()
  set(sanitizerFlags -fsanitize=${QUELLIN_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(QuellinSettings INTERFACE ${sanitizerFlags})
  target_link_options(QuellinSettings INTERFACE ${sanitizerFlags})
endif()
if(QUELLIN_BUILD_FUZZERS)
  # Counters in everything that a harness runs: without them libFuzzer sees no more than the harness itself.
  target_compile_options(QuellinSettings INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(QUELLIN_COVERAGE)
  target_compile_options(QuellinSettings INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(QuellinSettings INTERFACE --coverage)
endif()

# lld halves the link time where it is installed; nothing depends on it.
find_program(QUELLIN_LLD NAMES ld.lld)
if(QUELLIN_LLD AND NOT CMAKE_CROSSCOMPILING AND NOT APPLE)
  target_link_options(QuellinSettings INTERFACE -fuse-ld=lld)
endif()
find_program(QUELLIN_CCACHE NAMES ccache)
if(QUELLIN_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QUELLIN_CCACHE})
endif()
