# Packages of Debian: cpack -G DEB in a build folder makes one of each component.

set(CPACK_PACKAGE_NAME zr8bitlib)
set(CPACK_PACKAGE_CONTACT "ZR8BitLib maintainers <maintainers@zr8bitlib.invalid>") # there is no address yet
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_COMPONENTS_ALL runtime devel)
if(ZR_BUILD_HOST)
    list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_COMPONENT_DEVEL_DEPENDS runtime)
set(CPACK_COMPONENT_TOOL_DEPENDS runtime)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# Where the libraries are that a component needs of another.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    "${PROJECT_BINARY_DIR}/zrbaselib" "${PROJECT_BINARY_DIR}/zr8bitlib" "${PROJECT_BINARY_DIR}/zr8bitkit")

set(what
"The libraries model computers of ROM, RAM and a processor, and convert texts,
listings, pictures, sprites and sounds of the Videoton TV Computer (TVC).")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzr8bitlib${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${what}\nThis package has the shared libraries.")

set(CPACK_DEBIAN_DEVEL_PACKAGE_NAME libzr8bitlib-dev)
set(CPACK_DEBIAN_DEVEL_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVEL_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVEL_PACKAGE_DEPENDS "qt6-base-dev (>= 6.5)")
set(CPACK_COMPONENT_DEVEL_DESCRIPTION "${what}\nThis package has what building against them needs.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME zr8bit)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_TOOL_DESCRIPTION
    "${what}\nThis package has the program that offers them on the command line,\nwith examples and documents.")

include(CPack)
