# cmake "-DCOMMAND=prog;arg;..." [-DALLOW_STDOUT=ON] -P expect_clean.cmake
# Fails when the command exits non-zero or says anything: validators and man
# print their warnings and still exit 0. ALLOW_STDOUT ignores standard output
# (man's page, a validator's success line).
execute_process(COMMAND ${COMMAND} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(ALLOW_STDOUT)
  set(out "")
endif()
if(NOT status EQUAL 0 OR NOT out STREQUAL "" OR NOT err STREQUAL "")
  string(REPLACE ";" " " line "${COMMAND}")
  message(FATAL_ERROR "${line}\nexit status ${status}\n${out}${err}")
endif()
