# Headers only: the ABI of a release is part of its symbol names, so a stub would prove nothing.
foreach(name fmt::fmt fmt::fmt-header-only)
  if(NOT TARGET ${name})
    add_library(${name} INTERFACE IMPORTED)
    target_compile_definitions(${name} INTERFACE FMT_HEADER_ONLY=1)
  endif()
endforeach()
