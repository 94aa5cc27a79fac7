# Runs an example program in the C locale and UTC and compares what it prints
# with the expected text:
#   cmake -DPROGRAM=<program> -DEXPECTED=<expected_output.txt> -P check_output.cmake
if(NOT PROGRAM OR NOT EXPECTED)
  message(FATAL_ERROR "usage: cmake -DPROGRAM=<program> -DEXPECTED=<file> -P check_output.cmake")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=VARION_DEBUG LC_ALL=C TZ=UTC ${PROGRAM}
                RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
file(READ ${EXPECTED} expected)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} exited with ${status}:\n${output}${errors}")
endif()
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "${PROGRAM} printed\n${output}\ninstead of\n${expected}")
endif()
message(STATUS "${PROGRAM}: output as expected")
