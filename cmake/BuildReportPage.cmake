# Run at build time by cmake/ReportPage.cmake: writes the source file `page`, with the bundled page or with the reason
# why there is none.
file(MAKE_DIRECTORY ${build})

function(build_without reason)
  message(NOTICE "quellin report will not work: ${reason}")
  file(REMOVE ${template})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/AbsentReportPage.cpp.in ${page} @ONLY)
endfunction()

foreach(program IN ITEMS node npm)
  if(NOT ${program})
    build_without("the build found no ${program}; install Node.js 18 or newer with npm and build again")
    return()
  endif()
endforeach()

execute_process(COMMAND ${node} --version OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT version MATCHES "^v(1[89]|[2-9][0-9])\\.")
  build_without("the build found Node.js ${version}; install 18 or newer with npm and build again")
  return()
endif()

# Installed anew only when the lock file says something else than what is there.
set(installed ${build}/installed-lock.json)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${web}/package-lock.json ${installed}
  RESULT_VARIABLE differs OUTPUT_QUIET ERROR_QUIET)
if(differs)
  file(REMOVE_RECURSE ${build})
  file(COPY ${web}/package.json ${web}/package-lock.json DESTINATION ${build})
  execute_process(
    COMMAND ${npm} ci --prefix ${build} --ignore-scripts --no-audit --no-fund
      --loglevel=error --fetch-retries=1 --fetch-timeout=60000
    WORKING_DIRECTORY ${build} RESULT_VARIABLE failed)
  if(failed)
    build_without("npm could not install its packages; build again where it reaches its registry")
    return()
  endif()
  configure_file(${web}/package-lock.json ${installed} COPYONLY)
endif()

execute_process(COMMAND ${node} ${web}/build.mjs ${build}/node_modules ${template} ${page} RESULT_VARIABLE failed)
if(failed)
  file(REMOVE ${page} ${template})
  message(FATAL_ERROR "${web}/build.mjs cannot bundle the page of reports")
endif()
