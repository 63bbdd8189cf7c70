# The page of reports: bundled by npm's packages from Web/ into one source file. Without Node.js and npm, or where
# their packages cannot be installed, that file says so, and everything else is built all the same.
set(web ${PROJECT_SOURCE_DIR}/Web)
set(reportPage ${CMAKE_CURRENT_BINARY_DIR}/generated/quellin/BuiltReportPage.cpp)
set(reportPageTemplate ${CMAKE_CURRENT_BINARY_DIR}/web/page.html)
find_program(QUELLIN_NODE NAMES node nodejs)
find_program(QUELLIN_NPM NAMES npm)

file(GLOB_RECURSE webSources CONFIGURE_DEPENDS ${web}/src/*)
# The template is there only when all went well: as long as it is not, every build tries again.
add_custom_command(OUTPUT ${reportPage} ${reportPageTemplate}
  COMMAND ${CMAKE_COMMAND} -D web=${web} -D build=${CMAKE_CURRENT_BINARY_DIR}/web -D page=${reportPage}
    -D template=${reportPageTemplate} -D node=${QUELLIN_NODE} -D npm=${QUELLIN_NPM}
    -P ${PROJECT_SOURCE_DIR}/cmake/BuildReportPage.cmake
  DEPENDS ${webSources} ${web}/build.mjs ${web}/package.json ${web}/package-lock.json
    ${PROJECT_SOURCE_DIR}/cmake/BuildReportPage.cmake ${PROJECT_SOURCE_DIR}/cmake/AbsentReportPage.cpp.in
  COMMENT "Bundling the page of reports" VERBATIM)
