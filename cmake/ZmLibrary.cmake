# The shared library: all folders of the core, whole, and the load-time work that only it carries.
get_property(zm_core_targets GLOBAL PROPERTY ZM_CORE_TARGETS)
add_library(zenromath SHARED ${PROJECT_SOURCE_DIR}/runtime/load.cpp)
add_library(ZenroMath::zenromath ALIAS zenromath)
foreach(target IN LISTS zm_core_targets)
  target_sources(zenromath PRIVATE $<TARGET_OBJECTS:${target}>)
endforeach()
target_link_libraries(zenromath PRIVATE $<BUILD_INTERFACE:zm_options>)
target_compile_features(zenromath PUBLIC cxx_std_20)
target_include_directories(zenromath INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
set_target_properties(zenromath PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION 0
  LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

install(TARGETS zenromath EXPORT ZenroMathTargets
  LIBRARY DESTINATION ${ZM_MODULE_DIR} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(NOT WIN32)
  # Links in the usual library folder lead to the library's own folder.
  install(CODE "
    foreach(name libzenromath${CMAKE_SHARED_LIBRARY_SUFFIX} libzenromath${CMAKE_SHARED_LIBRARY_SUFFIX}.0)
      file(CREATE_LINK zenromath/\${name}
           \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/\${name} SYMBOLIC)
    endforeach()")
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT ZenroMathTargets NAMESPACE ZenroMath:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZenroMath)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZenroMathConfig.cmake.in ZenroMathConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZenroMath)
write_basic_package_version_file(ZenroMathConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZenroMathConfig.cmake ${PROJECT_BINARY_DIR}/ZenroMathConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZenroMath)
# The file tells its prefix from its own place, so that an installed tree can be moved.
file(RELATIVE_PATH ZM_PREFIX_FROM_PC /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/zenromath.pc.in zenromath.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zenromath.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
