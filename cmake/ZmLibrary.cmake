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
if(WIN32)
  zm_add_version(zenromath VFT_DLL "libzenromath.dll" "Foundation library for surveying and mapping applications")
  target_sources(zenromath PRIVATE ${ZM_DIALOG_RESOURCES})
  target_link_libraries(zenromath PRIVATE comctl32)
endif()
set_target_properties(zenromath PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION 0
  LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

# Programs that were linked to this line of releases name it, so that the next can change what may move.
if(UNIX AND NOT APPLE AND NOT ZM_SANITIZE)
  file(WRITE ${PROJECT_BINARY_DIR}/zenromath.map "ZENROMATH_0 { global: *; };\n")
  target_link_options(zenromath PRIVATE LINKER:--version-script=${PROJECT_BINARY_DIR}/zenromath.map)
endif()

# Components, each a package: library, qt, development, program, python.
install(TARGETS zenromath EXPORT ZenroMathTargets
  LIBRARY DESTINATION ${ZM_MODULE_DIR} COMPONENT library NAMELINK_COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

if(TARGET zenromath_qt)
  install(TARGETS zenromath_qt EXPORT ZenroMathQtTargets
    LIBRARY DESTINATION ${ZM_MODULE_DIR} COMPONENT qt NAMELINK_COMPONENT development)
  install(EXPORT ZenroMathQtTargets NAMESPACE ZenroMath:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZenroMath
    COMPONENT development)
endif()
if(NOT WIN32)
  # Links in the usual library folder lead to the libraries' own folder.
  set(zm_linked_libraries zenromath)
  if(TARGET zenromath_qt)
    list(APPEND zm_linked_libraries zenromath_qt)
  endif()
  foreach(library IN LISTS zm_linked_libraries)
    set(name lib${library}${CMAKE_SHARED_LIBRARY_SUFFIX})
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/links)
    foreach(link ${name} ${name}.0)
      file(CREATE_LINK zenromath/${link} ${PROJECT_BINARY_DIR}/links/${link} SYMBOLIC)
    endforeach()
    set(component library)
    if(library STREQUAL zenromath_qt)
      set(component qt)
    endif()
    install(FILES ${PROJECT_BINARY_DIR}/links/${name}.0 DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component})
    install(FILES ${PROJECT_BINARY_DIR}/links/${name} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  endforeach()
endif()
# What needs Qt is installed where there is Qt.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  PATTERN "qt*.h" EXCLUDE)
if(TARGET zenromath_qt)
  install(FILES ${PROJECT_SOURCE_DIR}/include/zenromath/qt.h ${PROJECT_SOURCE_DIR}/include/zenromath/qt_host.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zenromath COMPONENT development)
endif()
install(EXPORT ZenroMathTargets NAMESPACE ZenroMath:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZenroMath
  COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZenroMathConfig.cmake.in ZenroMathConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZenroMath)
write_basic_package_version_file(ZenroMathConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZenroMathConfig.cmake ${PROJECT_BINARY_DIR}/ZenroMathConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZenroMath COMPONENT development)
# The file tells its prefix from its own place, so that an installed tree can be moved.
file(RELATIVE_PATH ZM_PREFIX_FROM_PC /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
set(zm_packages zenromath)
if(TARGET zenromath_qt)
  list(APPEND zm_packages zenromath_qt)
endif()
foreach(package IN LISTS zm_packages)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${package}.pc.in ${package}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()
