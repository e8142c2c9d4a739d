# The package of the host, the libraries and what building against them needs: cpack -G DEB in a build folder.

set(CPACK_PACKAGE_NAME zr8bitlib)
set(CPACK_PACKAGE_CONTACT "ZR8BitLib maintainers <maintainers@zr8bitlib.invalid>") # there is no address yet
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"The library models a computer of ROM blocks, RAM blocks and a MOS 6510. It
converts texts, listings, pictures, sprites and sounds of the Videoton TV
Computer (TVC). A kit adds what goes beyond both. The program zr8bit offers
them on the command line.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-base-dev (>= 6.5)") # for the headers

include(CPack)
