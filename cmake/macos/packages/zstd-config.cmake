# Homebrew's zstd.
if(NOT TARGET zstd::libzstd_shared)
  add_library(zstd::libzstd_shared INTERFACE IMPORTED)
  target_link_libraries(zstd::libzstd_shared INTERFACE -lzstd)
endif()
