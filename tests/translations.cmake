# Fails unless lupdate files the libraries' texts under the classes that the running code asks for.
# cmake -DLUPDATE=... -DSOURCE=... -DTS=... -P translations.cmake

execute_process(COMMAND "${LUPDATE}" -silent -I "${SOURCE}" "${SOURCE}/zrbaselib" "${SOURCE}/zr8bitlib" -ts "${TS}"
    COMMAND_ERROR_IS_FATAL ANY)
file(READ "${TS}" texts)
string(REGEX MATCHALL "<name>[^<]*</name>" contexts "${texts}")
set(expected)
foreach(class IN ITEMS ZR8BitComputer ZR8BitProcBase ZR8BitProcMOS6510 ZRMOS6510PSRegister)
    list(APPEND expected "<name>ZR::${class}</name>")
endforeach()
list(SORT contexts)
if(NOT contexts STREQUAL expected)
    message(FATAL_ERROR "The texts stand under ${contexts}")
endif()
