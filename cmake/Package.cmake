# The Debian package (CPack's DEB generator), made by scripts/make-deb from
# a build configured with CMAKE_INSTALL_PREFIX=/usr: everything the install
# rules put in place (cmake/Install.cmake). The library dependencies come
# from dpkg-shlibdeps; the services zorvel talks to are recommended, since
# it runs without each of them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zorvel)
set(CPACK_PACKAGE_VENDOR "Zorvel")
# The version `zorvel --version` prints, "1.0.0 alpha7" as 1.0.0~alpha7.
file(STRINGS ${PROJECT_SOURCE_DIR}/src/core/zv_exception.h zv_version_line
     REGEX "kVersion = ")
string(REGEX REPLACE ".*\"(.*)\".*" "\\1" zv_version "${zv_version_line}")
string(REPLACE " " "~" zv_version "${zv_version}")
set(CPACK_PACKAGE_VERSION ${zv_version})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "call blocking and caller information for Linux phones")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Zorvel blocks calls by list, pattern, area, hidden and unknown callers,\n\
shows the area and the contact's details of a caller, and keeps ring\n\
durations, for the calls of ModemManager. Contacts come from Evolution\n\
Data Server or vCard files; sounds and vibration go through feedbackd.")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Zorvel developers <zorvel@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Our own libraries are in the package; dpkg-shlibdeps finds them there.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${CMAKE_BINARY_DIR} ${CMAKE_BINARY_DIR}/src/hosts)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "modemmanager, evolution-data-server, feedbackd")
# Installed programs and libraries lose their debugging symbols (a build
# with them is four times the size).
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
include(CPack)
