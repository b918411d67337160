# Helpers for the tools' script tests.

# run_tool(EXPECTED_EXIT OUTPUT_VAR ERROR_VAR COMMAND...): runs a tool and stops when its exit code differs.
function(run_tool expected out err)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE stdout ERROR_VARIABLE stderr)
    if(NOT result STREQUAL expected)
        message(FATAL_ERROR "${ARGN}: exit ${result}, expected ${expected}\n${stdout}\n${stderr}")
    endif()
    set(${out} "${stdout}" PARENT_SCOPE)
    set(${err} "${stderr}" PARENT_SCOPE)
endfunction()

function(expect_in text wanted)
    string(FIND "${text}" "${wanted}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "expected \"${wanted}\" in:\n${text}")
    endif()
endfunction()

function(expect_not_in text unwanted)
    string(FIND "${text}" "${unwanted}" at)
    if(NOT at EQUAL -1)
        message(FATAL_ERROR "did not expect \"${unwanted}\" in:\n${text}")
    endif()
endfunction()

# expect_error_table(CASE...): each case reads "COMMAND LINE => ERROR TEXT"; the command (split at spaces as
# a shell would) must exit with 1 and print the text on standard error.
function(expect_error_table)
    foreach(case IN LISTS ARGN)
        string(FIND "${case}" " => " at)
        string(SUBSTRING "${case}" 0 ${at} command)
        math(EXPR after "${at} + 4")
        string(SUBSTRING "${case}" ${after} -1 wanted)
        separate_arguments(command UNIX_COMMAND "${command}")
        run_tool(1 out err ${command})
        expect_in("${err}" "${wanted}")
    endforeach()
endfunction()
