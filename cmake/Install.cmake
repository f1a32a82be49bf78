# What `cmake --install` puts in place: both libraries, the headers, the CMake package and the pkg-config file.
# The two libraries are separate export sets, so that a program of the shared one needs none of its dependencies.
include(CMakePackageConfigHelpers)

# The file that the regular expressions come from is named as the linker searches it, for programs of the static library.
get_target_property(regex_library zuxmllib16_regex INTERFACE_LINK_LIBRARIES)
cmake_path(GET regex_library STEM regex_name)
string(REGEX REPLACE "^lib" "" regex_name ${regex_name})
target_link_libraries(ZuXmlLib16_static PRIVATE $<INSTALL_INTERFACE:${regex_name}>)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZuXmlLib16)

install(TARGETS ZuXmlLib16 EXPORT ZuXmlLib16Targets FILE_SET HEADERS)
install(EXPORT ZuXmlLib16Targets NAMESPACE ZuXmlLib16:: DESTINATION ${package_dir})
install(TARGETS ZuXmlLib16_static EXPORT ZuXmlLib16StaticTargets FILE_SET HEADERS)
install(EXPORT ZuXmlLib16StaticTargets NAMESPACE ZuXmlLib16:: DESTINATION ${package_dir})

configure_package_config_file(cmake/ZuXmlLib16Config.cmake.in ZuXmlLib16Config.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(ZuXmlLib16ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZuXmlLib16Config.cmake ${PROJECT_BINARY_DIR}/ZuXmlLib16ConfigVersion.cmake
  DESTINATION ${package_dir})

# The installed tree can be moved: the prefix is found from where the .pc file lies.
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pkgconfig_to_prefix /${pkgconfig_dir} /)
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix ${pkgconfig_to_prefix})
configure_file(cmake/ZuXmlLib16.pc.in ZuXmlLib16.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ZuXmlLib16.pc DESTINATION ${pkgconfig_dir})
