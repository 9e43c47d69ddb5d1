# What `cmake --install` puts under the prefix, besides the programs and
# modules that their own folders install:
#   lib/            libboardlib, libboardplatform
#   include/boardlib/  the headers of the layers (flat, as the sources include
#                   them), without the ones that need Xerces-C
#   lib/cmake/boardlib/  the CMake package: find_package(boardlib CONFIG)
#                   gives boardlib::boardlib
#   lib/pkgconfig/boardlib.pc
#   share/boardlib/ the data installation (data/) and the application root
#                   (scripts/board/init.tcl), which the installed library
#                   finds from its own folder
# The libraries and the share folder form the install component "runtime",
# which the Python module ("python") needs; pip installs just those two.
include(CMakePackageConfigHelpers)

set(BOARDLIB_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/boardlib)

install(TARGETS boardplatform boardlib EXPORT boardlibTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime
  INCLUDES DESTINATION ${BOARDLIB_INSTALL_INCLUDEDIR})
install(EXPORT boardlibTargets NAMESPACE boardlib:: DESTINATION ${BOARDLIB_INSTALL_CMAKEDIR})

configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/boardlibConfig.cmake.in
  ${CMAKE_BINARY_DIR}/boardlibConfig.cmake INSTALL_DESTINATION ${BOARDLIB_INSTALL_CMAKEDIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/boardlibConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/boardlibConfig.cmake ${CMAKE_BINARY_DIR}/boardlibConfigVersion.cmake
  DESTINATION ${BOARDLIB_INSTALL_CMAKEDIR})

# The .pc file finds the prefix from its own folder, so that the tree can be
# installed with --prefix or copied anywhere.
file(RELATIVE_PATH BOARDLIB_PC_TO_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file(${CMAKE_SOURCE_DIR}/cmake/boardlib.pc.in ${CMAKE_BINARY_DIR}/boardlib.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/boardlib.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

file(GLOB boardlib_headers ${CMAKE_SOURCE_DIR}/platform/*.h ${CMAKE_SOURCE_DIR}/board/*/*.h)
list(FILTER boardlib_headers EXCLUDE REGEX "/(HBOResolver|HBOSAX2Handler|HBOXercesSupport)\\.h$")
install(FILES ${boardlib_headers} DESTINATION ${BOARDLIB_INSTALL_INCLUDEDIR})

install(DIRECTORY ${CMAKE_SOURCE_DIR}/data/ DESTINATION ${BOARDLIB_INSTALL_SHAREDIR}/data
  COMPONENT runtime)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/scripts/board DESTINATION ${BOARDLIB_INSTALL_SHAREDIR}/scripts
  COMPONENT runtime)
