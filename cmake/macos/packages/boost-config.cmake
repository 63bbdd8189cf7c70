# Headers only.
foreach(name Boost::headers Boost::boost)
  if(NOT TARGET ${name})
    add_library(${name} INTERFACE IMPORTED)
  endif()
endforeach()
