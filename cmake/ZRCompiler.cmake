# How everything in this project is compiled.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(WIN32 AND NOT CMAKE_RUNTIME_OUTPUT_DIRECTORY)
    # Windows looks for the libraries beside the program.
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
endif()

add_compile_definitions(
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

if(MSVC)
    add_compile_options(/W4 /utf-8)
else()
    add_compile_options(-Wall -Wextra -Wpedantic -Wconversion)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Lets GCC inline the functions of a shared library within it, as Clang does. (Binding all of its symbols
        # locally would be faster still, but then a host without position independent code could not connect to
        # signals by their addresses.)
        add_compile_options(-fno-semantic-interposition)
    endif()
endif()

if(ZR_SANITIZERS)
    add_compile_options(-fsanitize=${ZR_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${ZR_SANITIZERS})
elseif(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    # A class whose meta-object code is missing would link into a shared library without a word.
    add_link_options(-Wl,--no-undefined)
endif()
