# The libraries of this project, and the package that they are installed as.

include(CMakePackageConfigHelpers)
include(GenerateExportHeader)

# By what the programs and libraries of the package find each other wherever it is installed.
if(APPLE)
    set(ZR_ORIGIN "@loader_path")
else()
    set(ZR_ORIGIN "$ORIGIN")
endif()

# zr_add_library(NAME SOURCES... HEADERS...): the library NAME of the current folder. The folder's name is
# the one that its headers are included by, in the tree and after installation.
function(zr_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;HEADERS")
    get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    set(generated_dir "${PROJECT_BINARY_DIR}/include")
    set(export_header "${generated_dir}/${folder}/${folder}_export.h")

    add_library(${name} ${arg_SOURCES} ${arg_HEADERS})
    add_library(ZR::${name} ALIAS ${name})
    generate_export_header(${name} BASE_NAME ${folder} EXPORT_FILE_NAME "${export_header}")
    if(NOT BUILD_SHARED_LIBS)
        string(TOUPPER "${folder}" macro_prefix)
        target_compile_definitions(${name} PUBLIC ${macro_prefix}_STATIC_DEFINE)
    endif()
    target_compile_features(${name} PUBLIC cxx_std_17)
    target_include_directories(${name} PUBLIC
        "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
        "$<BUILD_INTERFACE:${generated_dir}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "${ZR_ORIGIN}"
        ZR_HEADERS "${arg_HEADERS}")
    if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT ZR_SANITIZERS)
        set(exports "${PROJECT_SOURCE_DIR}/cmake/exports.map")
        target_link_options(${name} PRIVATE "-Wl,--version-script=${exports}")
        set_target_properties(${name} PROPERTIES LINK_DEPENDS "${exports}")
    endif()

    if(ZR_INSTALL)
        install(TARGETS ${name} EXPORT ZR8BitLibTargets
            RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
        install(FILES ${arg_HEADERS} "${export_header}"
            DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
    endif()
endfunction()

# Installs what find_package(ZR8BitLib) reads.
function(zr_install_package)
    set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/ZR8BitLib")
    configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/ZR8BitLibConfig.cmake.in"
        "${PROJECT_BINARY_DIR}/ZR8BitLibConfig.cmake" INSTALL_DESTINATION "${package_dir}")
    write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZR8BitLibConfigVersion.cmake"
        COMPATIBILITY SameMajorVersion)
    install(EXPORT ZR8BitLibTargets NAMESPACE ZR:: DESTINATION "${package_dir}")
    install(FILES
        "${PROJECT_BINARY_DIR}/ZR8BitLibConfig.cmake"
        "${PROJECT_BINARY_DIR}/ZR8BitLibConfigVersion.cmake"
        DESTINATION "${package_dir}")
endfunction()
