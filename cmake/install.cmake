# What an administrator installs: the program (installed by the top level), its manual page,
# its bash completion and its licence; and the Debian package that carries them.
add_subdirectory(doc)
add_subdirectory(completion)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME trovan)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "the trovan developers")
set(CPACK_PACKAGE_CONTACT "trovan developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "save and restore the trustees and quotas of a QUILL volume")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "trovan developers")
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# trovan needs the C and C++ libraries only; trovanctl also links the XML parser.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.34), libstdc++6 (>= 12), libxml2 (>= 2.9.14)")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "save and restore the trustees and quotas of a QUILL volume
trovan saves the trustees, inherited rights filters, user quotas and
directory quotas of a volume of the QUILL file system into a Metadata
document, and restores them from one, through the file system's
management files. It also restores the trustee reports of legacy
Kestrel servers and works with RXL trustee files. trovanctl checks
Metadata documents before they are restored.")
include(CPack)
