# Homebrew's simdjson. The privileged tool must not end up with it: its executable is checked.
if(NOT TARGET simdjson::simdjson)
  add_library(simdjson::simdjson INTERFACE IMPORTED)
  target_link_libraries(simdjson::simdjson INTERFACE -lsimdjson)
endif()
