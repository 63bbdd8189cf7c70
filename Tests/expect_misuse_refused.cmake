# Compiles `source` as it is, which must succeed, and with `misuse` defined, which must fail in that very file.
# usage: cmake -D compiler=... -D source=... -D misuse=... -D includes=... -P expect_misuse_refused.cmake
list(TRANSFORM includes PREPEND -I)
set(command ${compiler} -std=c++23 -Wall -Wextra -Werror -fsyntax-only ${includes} ${source})

execute_process(COMMAND ${command} RESULT_VARIABLE status ERROR_VARIABLE diagnostics)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${source} does not compile without a misuse:\n${diagnostics}")
endif()

execute_process(COMMAND ${command} -D${misuse} RESULT_VARIABLE status ERROR_VARIABLE diagnostics)
if(status EQUAL 0)
  message(FATAL_ERROR "${misuse} compiles")
endif()
if(NOT diagnostics MATCHES "OwnedMisuse\\.cpp:[0-9]+:[0-9]+: error")
  message(FATAL_ERROR "${misuse} fails for another reason:\n${diagnostics}")
endif()
