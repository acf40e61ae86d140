# What is installed: the program with its manual page and completions, the extension, the libraries
# that a host shares with it, all that a host includes, and how CMake and pkg-config find these.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/osm2roadnet)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/osm2roadnet)
set(full_header_dir ${CMAKE_INSTALL_FULL_INCLUDEDIR}/osm2roadnet)

install(TARGETS road_model host_array importOSMRoadNetworkImpl EXPORT osm2roadnet
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION ${header_dir})
if(OSM2ROADNET_PROGRAM)
  install(TARGETS osm2roadnet road_export_gdal LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

  # The manual page is what --help says, without the date of the build.
  find_program(HELP2MAN help2man REQUIRED)
  add_custom_command(
    OUTPUT osm2roadnet.1
    COMMAND ${HELP2MAN} --no-info --name ${PROJECT_DESCRIPTION} --output osm2roadnet.1
            $<TARGET_FILE:osm2roadnet>
    COMMAND sed -i "/^.TH/s/\"[A-Z][a-z]* [0-9]*\"/\"\"/" osm2roadnet.1
    DEPENDS osm2roadnet VERBATIM)
  add_custom_target(manual_page ALL DEPENDS osm2roadnet.1)
  install(FILES ${PROJECT_BINARY_DIR}/osm2roadnet.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES cli/completion/osm2roadnet.bash RENAME osm2roadnet
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES cli/completion/_osm2roadnet
          DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()

foreach(folder gateway model)
  install(DIRECTORY ${folder} DESTINATION ${header_dir} FILES_MATCHING PATTERN "*.hpp")
endforeach()
install(FILES osm/ReadError.hpp DESTINATION ${header_dir}/osm)
install(FILES support/ModelId.hpp support/ustring.hpp DESTINATION ${header_dir}/support)

write_basic_package_version_file(osm2roadnetConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(EXPORT osm2roadnet NAMESPACE osm2roadnet:: DESTINATION ${package_dir}
        FILE osm2roadnetTargets.cmake)
install(FILES cmake/osm2roadnetConfig.cmake ${PROJECT_BINARY_DIR}/osm2roadnetConfigVersion.cmake
        DESTINATION ${package_dir})

file(RELATIVE_PATH pkgconfig_to_headers ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${full_header_dir})
configure_file(cmake/osm2roadnet.pc.in osm2roadnet.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/osm2roadnet.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The page for hosts links to headers and examples from its place in the source tree.
file(RELATIVE_PATH doc_to_headers ${CMAKE_INSTALL_FULL_DOCDIR} ${full_header_dir})
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS docs/embedding.md)
file(READ docs/embedding.md page)
string(REPLACE "](../examples/" "](examples/" page "${page}")
string(REPLACE "](../" "](${doc_to_headers}/" page "${page}")
file(WRITE ${PROJECT_BINARY_DIR}/embedding.md "${page}")
install(FILES ${PROJECT_BINARY_DIR}/embedding.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
