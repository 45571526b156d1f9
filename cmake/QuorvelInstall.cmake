# Install rules and the exported package: find_package(quorvel) gives quorvel::quorvel (the
# shared library with the C interface) and quorvel::quorvel_static (everything, for C++ hosts);
# pkg-config gets quorvel.pc. Installed programs find the library through a relative RPATH.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(QUORVEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/quorvel)
file(RELATIVE_PATH QUORVEL_BIN_TO_LIB /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})

add_library(quorvel::quorvel_static ALIAS quorvel)
set_target_properties(quorvel PROPERTIES EXPORT_NAME quorvel_static)
# C++ hosts of the static library include "foundation/...", "invoices/..." as the sources do.
target_include_directories(quorvel PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
                           $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/quorvel>)
target_include_directories(quorvel_shared INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
# The pkg-config modules the library is built on, as given to pkg_check_modules(DEPS ...), so the
# installed package asks for the same ones (FindPkgConfig keeps the call's arguments).
set(QUORVEL_PKG_MODULES)
foreach(argument ${__pkg_config_arguments_DEPS})
  if(NOT argument MATCHES "^(REQUIRED|QUIET|IMPORTED_TARGET|GLOBAL|NO_CMAKE_PATH|NO_CMAKE_ENVIRONMENT_PATH)$")
    list(APPEND QUORVEL_PKG_MODULES ${argument})
  endif()
endforeach()
target_link_libraries(quorvel PUBLIC $<INSTALL_INTERFACE:PkgConfig::quorvel_deps>)

install(TARGETS quorvel quorvel_shared EXPORT quorvelTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} NAMELINK_COMPONENT Development
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${PROJECT_SOURCE_DIR}/include/quorvel.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(dir ${QUORVEL_SUBSYSTEMS})
  file(GLOB dir_headers ${PROJECT_SOURCE_DIR}/${dir}/*.hpp)
  install(FILES ${dir_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quorvel/${dir})
endforeach()
file(GLOB QUORVEL_SAMPLES ${PROJECT_SOURCE_DIR}/demo/samples/*.json)
install(FILES ${QUORVEL_SAMPLES} DESTINATION ${CMAKE_INSTALL_DATADIR}/quorvel/samples)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
if(TARGET quorvel_cli)
  set_target_properties(quorvel_cli PROPERTIES INSTALL_RPATH "$ORIGIN/${QUORVEL_BIN_TO_LIB}")
  install(TARGETS quorvel_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT quorvelTargets NAMESPACE quorvel:: DESTINATION ${QUORVEL_CMAKE_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/quorvelConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/quorvelConfig.cmake INSTALL_DESTINATION ${QUORVEL_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/quorvelConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/quorvelConfig.cmake ${PROJECT_BINARY_DIR}/quorvelConfigVersion.cmake
        DESTINATION ${QUORVEL_CMAKE_DIR})

# quorvel.pc finds its prefix from its own place, so an installed tree can be moved.
file(RELATIVE_PATH QUORVEL_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" QUORVEL_PC_TO_PREFIX "${QUORVEL_PC_TO_PREFIX}")
list(JOIN QUORVEL_PKG_MODULES " " QUORVEL_PC_REQUIRES)
configure_file(${CMAKE_CURRENT_LIST_DIR}/quorvel.pc.in ${PROJECT_BINARY_DIR}/quorvel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quorvel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
