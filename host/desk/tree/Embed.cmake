# Writes a source file that holds the folder FOLDER as a packed archive; STATE names its function.
execute_process(COMMAND ${CMAKE_COMMAND} -E tar czf ${OUTPUT}.tar.gz .
                WORKING_DIRECTORY ${FOLDER} COMMAND_ERROR_IS_FATAL ANY)
file(READ ${OUTPUT}.tar.gz BYTES HEX)
string(REGEX REPLACE "(..)" "0x\\1," BYTES "${BYTES}")
configure_file(${TEMPLATE} ${OUTPUT} @ONLY)
