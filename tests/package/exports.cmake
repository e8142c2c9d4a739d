# Checks that a shared library exports each class of its public headers, and nothing else:
#   cmake -DNM=... -DLIBRARY=... -DHEADERS=... -P exports.cmake
cmake_minimum_required(VERSION 3.22)

# The classes as mangled names spell them, with the length in front.
foreach(header IN LISTS HEADERS)
    file(STRINGS "${header}" declarations REGEX "^class [A-Z0-9]+_EXPORT ")
    foreach(declaration IN LISTS declarations)
        string(REGEX REPLACE "^class [A-Z0-9]+_EXPORT ([A-Za-z0-9]+).*" "\\1" class "${declaration}")
        string(LENGTH "${class}" length)
        list(APPEND classes ${length}${class})
    endforeach()
endforeach()
if(NOT classes)
    message(FATAL_ERROR "No class is declared in: ${HEADERS}")
endif()
list(JOIN classes "|" any_class)

execute_process(COMMAND "${NM}" -D --defined-only "${LIBRARY}"
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")

# Members, and what the compiler makes for a class (T).
set(silent_classes ${classes})
foreach(symbol IN LISTS symbols)
    if(symbol MATCHES " _Z(T[ISV]|Th[n0-9]+_)?(NK?)?(2ZR)?(${any_class})")
        list(REMOVE_ITEM silent_classes "${CMAKE_MATCH_4}")
    else()
        string(APPEND others "\n${symbol}")
    endif()
endforeach()

if(silent_classes)
    message(SEND_ERROR "${LIBRARY} exports nothing of: ${silent_classes}")
endif()
if(others)
    message(SEND_ERROR "${LIBRARY} exports beside its classes:${others}")
endif()
