# The Expat that is part of macOS.
if(NOT TARGET EXPAT::EXPAT)
  add_library(EXPAT::EXPAT INTERFACE IMPORTED)
  target_link_libraries(EXPAT::EXPAT INTERFACE -lexpat)
endif()
