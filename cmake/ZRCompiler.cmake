# How everything in this project is compiled.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_compile_definitions(
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

if(MSVC)
    add_compile_options(/W4)
else()
    # Calls within a library need not go through its symbol table: nobody replaces its functions.
    add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -fno-semantic-interposition)
endif()

if(ZR_SANITIZERS)
    add_compile_options(-fsanitize=${ZR_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${ZR_SANITIZERS})
elseif(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    # A class whose meta-object code is missing would link into a shared library without a word.
    add_link_options(-Wl,--no-undefined -Wl,-Bsymbolic-functions)
endif()
