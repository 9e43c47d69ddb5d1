# Runs one tool call and compares what it did with its golden file: the
# exit status, standard output and standard error, with the test data and
# source directories written as @DATA@ and @SOURCE@ so that the file holds
# no path of this checkout. With BOARDLIB_UPDATE_GOLDEN set in the
# environment the golden file is written instead of compared.
#
# A call that writes files is given OUTDIR, a directory made empty before
# the call: after it, each file there follows the output, whole, in name
# order, and the directory is written as @OUT@.
#
# Variables: TOOL, ARGS and ENV ("|"-separated lists), INPUT (a file for
# standard input, may be empty), OUTDIR (may be empty), GOLDEN, DATA, SOURCE.
string(REPLACE "|" ";" args "${ARGS}")
string(REPLACE "|" ";" env "${ENV}")
if(OUTDIR)
  file(REMOVE_RECURSE ${OUTDIR})
  file(MAKE_DIRECTORY ${OUTDIR})
endif()
set(input)
if(INPUT)
  set(input INPUT_FILE ${INPUT})
endif()
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env --unset=BOARDLIB_PARAMS --unset=BOARDLIB_DEBUG
          --unset=BOARDLIB_TRACE ${env} ${TOOL} ${args}
  ${input}
  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)

set(actual "exit: ${status}\n--- stdout\n${out}--- stderr\n${err}")
if(OUTDIR)
  file(GLOB written RELATIVE ${OUTDIR} ${OUTDIR}/*)
  list(SORT written)
  foreach(name ${written})
    file(READ ${OUTDIR}/${name} content)
    string(APPEND actual "--- file ${name}\n${content}")
  endforeach()
  string(REPLACE "${OUTDIR}" "@OUT@" actual "${actual}")
endif()
foreach(dir DATA SOURCE)
  string(REPLACE "${${dir}}" "@${dir}@" actual "${actual}")
endforeach()

if(DEFINED ENV{BOARDLIB_UPDATE_GOLDEN})
  file(WRITE ${GOLDEN} "${actual}")
  return()
endif()
if(NOT EXISTS ${GOLDEN})
  message(FATAL_ERROR "No golden file ${GOLDEN}; this run gave:\n${actual}")
endif()
file(READ ${GOLDEN} expected)
if(NOT actual STREQUAL expected)
  get_filename_component(name ${GOLDEN} NAME)
  set(got ${CMAKE_CURRENT_BINARY_DIR}/${name}.actual)
  file(WRITE ${got} "${actual}")
  execute_process(COMMAND diff -u ${GOLDEN} ${got})
  message(FATAL_ERROR "The output differs from ${GOLDEN} (diff above, whole output in ${got}).")
endif()
