# Checks that a shared library exports each class of its public headers, and nothing else:
#   cmake -DNM=... -DLIBRARY=... -DHEADERS=... -P exports.cmake
cmake_minimum_required(VERSION 3.22)

foreach(header IN LISTS HEADERS)
    file(STRINGS "${header}" declarations REGEX "^class [A-Z0-9]+_EXPORT ")
    foreach(declaration IN LISTS declarations)
        string(REGEX REPLACE "^class [A-Z0-9]+_EXPORT ([A-Za-z0-9]+).*" "\\1" class "${declaration}")
        list(APPEND classes ${class})
    endforeach()
endforeach()

execute_process(COMMAND "${NM}" -D --defined-only -C "${LIBRARY}"
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")

set(kinds "(vtable for |typeinfo for |typeinfo name for |guard variable for |[a-z-]*virtual thunk to )?")
set(silent ${classes})
foreach(symbol IN LISTS symbols)
    if(symbol MATCHES "^[0-9a-f]+ [A-Za-z] ${kinds}(ZR::)?([A-Za-z0-9]+)(::|$)" AND CMAKE_MATCH_3 IN_LIST classes)
        list(REMOVE_ITEM silent ${CMAKE_MATCH_3})
    else()
        list(APPEND strange "${symbol}")
    endif()
endforeach()

list(JOIN strange "\n" strange)
if(strange OR silent OR NOT classes)
    message(FATAL_ERROR "${LIBRARY}\nexports beside its classes:\n${strange}\nand nothing of: ${silent}")
endif()
