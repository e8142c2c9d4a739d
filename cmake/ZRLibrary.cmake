# The libraries of this project, and the package that they are installed as.

include(CMakePackageConfigHelpers)
include(GenerateExportHeader)

# By what the programs and libraries of the package find each other wherever it is installed.
if(APPLE)
    set(ZR_ORIGIN "@loader_path")
else()
    set(ZR_ORIGIN "$ORIGIN")
endif()

# zr_show_headers(FOLDER HEADERS...): puts the public headers side by side into a folder, as they are installed, so
# that dependents in the build tree see these and no other files. Headers have guards by name: a compiler may meet one
# at both places.
function(zr_show_headers folder)
    foreach(header IN LISTS ARGN)
        get_filename_component(file "${header}" NAME)
        if(WIN32) # where links need a privilege
            configure_file("${header}" "${folder}/${file}" COPYONLY)
        else()
            file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}/${header}" "${folder}/${file}" SYMBOLIC)
        endif()
    endforeach()
endfunction()

# zr_add_library(NAME SOURCES... HEADERS...): the library NAME of the current folder. The folder's name is
# the one that its headers are included by, in the tree and after installation.
function(zr_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;HEADERS")
    get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    set(generated_dir "${PROJECT_BINARY_DIR}/include")
    set(export_header "${generated_dir}/${folder}/${folder}_export.h")

    add_library(${name} ${arg_SOURCES} ${arg_HEADERS})
    add_library(ZR::${name} ALIAS ${name})
    file(MAKE_DIRECTORY "${generated_dir}/${folder}")
    generate_export_header(${name} BASE_NAME ${folder} EXPORT_FILE_NAME "${export_header}")
    if(NOT BUILD_SHARED_LIBS)
        string(TOUPPER "${folder}" macro_prefix)
        target_compile_definitions(${name} PUBLIC ${macro_prefix}_STATIC_DEFINE)
    endif()
    target_compile_features(${name} PUBLIC cxx_std_17)
    zr_show_headers("${generated_dir}/${folder}" ${arg_HEADERS})
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}" PUBLIC
        "$<BUILD_INTERFACE:${generated_dir}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
    set_target_properties(${name} PROPERTIES
        UNITY_BUILD OFF # whatever a project around wants: files have helpers of the same names
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
            RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT devel
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT devel)
        install(FILES ${arg_HEADERS} "${export_header}"
            DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT devel)
    endif()
endfunction()

# Installs what find_package(ZR8BitLib) reads.
function(zr_install_package)
    set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/ZR8BitLib")
    configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/ZR8BitLibConfig.cmake.in"
        "${PROJECT_BINARY_DIR}/ZR8BitLibConfig.cmake" INSTALL_DESTINATION "${package_dir}")
    write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZR8BitLibConfigVersion.cmake"
        COMPATIBILITY SameMajorVersion)
    install(EXPORT ZR8BitLibTargets NAMESPACE ZR:: DESTINATION "${package_dir}" COMPONENT devel)
    install(FILES
        "${PROJECT_BINARY_DIR}/ZR8BitLibConfig.cmake"
        "${PROJECT_BINARY_DIR}/ZR8BitLibConfigVersion.cmake"
        DESTINATION "${package_dir}" COMPONENT devel)
endfunction()
