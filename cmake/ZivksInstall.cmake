# Installed the way C libraries are: headers, versioned shared objects, a pkg-config
# file and a CMake package (find_package(zivks) gives zivks::base and zivks::core).
include(CMakePackageConfigHelpers)

install(TARGETS zivks_base zivk_core EXPORT zivksTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
# The wider x86 levels where the dynamic loader looks for them (see CMakeLists.txt).
foreach(_level IN LISTS ZIVKS_HWCAPS_LEVELS)
  install(TARGETS zivks_base_${_level} zivk_core_${_level}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/glibc-hwcaps/x86-64-${_level} NAMELINK_SKIP)
endforeach()
# zivks.h includes one header per subsystem from zivks/.
install(FILES ${PROJECT_SOURCE_DIR}/include/zivks.h ${PROJECT_SOURCE_DIR}/include/zivk_core.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/zivks DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")
install(EXPORT zivksTargets NAMESPACE zivks:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/zivks)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/zivksConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zivksConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/zivks)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zivksConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zivksConfig.cmake ${PROJECT_BINARY_DIR}/zivksConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/zivks)

# Relocatable: the prefix is found from where the .pc file lies.
file(RELATIVE_PATH ZIVKS_PC_TO_PREFIX "/p/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/p")
configure_file(${PROJECT_SOURCE_DIR}/cmake/zivks.pc.in ${PROJECT_BINARY_DIR}/zivks.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zivks.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
