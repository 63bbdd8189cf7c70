# What is no header of the package: how one host fills the contracts, what the store is made of, the recorder's state,
# the coroutines of the engine, and the parser of JSON.
set(QUELLIN_INTERNAL Darwin Linux IOReport Storage Sessions/RecorderState.h Support/Awaiting.h JSON/JSONNode.h)
list(JOIN QUELLIN_INTERNAL "|" internal)
set(QUELLIN_INTERNAL_PATH "/QuellinCore/(.*/)?(${internal})(/|$)")

# Lets an archive and a shared library be made of the same objects. The names of the namespace are visible in them, but
# not those of sources with internal headers, which mark what they define for others. The list of exports keeps back all
# that is not ours.
function(quellin_compile_for_sharing name sources)
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON QUELLIN_FOR_SHARING ON)
  if(NOT APPLE)
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
  endif()
  foreach(source IN LISTS sources)
    cmake_path(REPLACE_EXTENSION source LAST_ONLY .h OUTPUT_VARIABLE header)
    if(header MATCHES "${QUELLIN_INTERNAL_PATH}" AND EXISTS ${header})
      set_property(SOURCE ${source} APPEND PROPERTY COMPILE_OPTIONS -fvisibility=hidden)
    endif()
  endforeach()
endfunction()

# The shared library `name`Shared, of the objects of the archive `name`.
function(quellin_shared_library name)
  add_library(${name}Shared SHARED $<TARGET_OBJECTS:${name}>)
  set_target_properties(${name}Shared PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME ${name}
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    INSTALL_RPATH $<IF:$<PLATFORM_ID:Darwin>,@loader_path,$ORIGIN>)
  if(APPLE)
    set(list ${PROJECT_SOURCE_DIR}/cmake/exports.txt)
    target_link_options(${name}Shared PRIVATE -Wl,-exported_symbols_list,${list})
  else()
    set(list ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(${name}Shared PRIVATE -Wl,--version-script,${list} -Wl,--no-undefined)
  endif()
  set_target_properties(${name}Shared PROPERTIES LINK_DEPENDS ${list})
endfunction()
