# What users get and where it goes: `cmake --install`, a Debian package and an archive to unpack.
# ./run package makes both packages.
set(documents share/doc/orvel-scope)

# What is in the packages, and nothing else: making one builds no test.
add_custom_target(distribution DEPENDS orvelscope vst2)
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

install(TARGETS orvelscope RUNTIME DESTINATION bin)
install(TARGETS vst2 LIBRARY DESTINATION lib/vst)
if(TARGET vst3)
  set(bundle OrvelScope.vst3/Contents)
  install(TARGETS vst3 LIBRARY DESTINATION lib/vst3/${bundle}/${CMAKE_SYSTEM_PROCESSOR}-linux)
  install(FILES "${CMAKE_BINARY_DIR}/plugins/vst3/${bundle}/Resources/moduleinfo.json"
    DESTINATION lib/vst3/${bundle}/Resources)
  add_dependencies(distribution vst3_bundle)
endif()

set(man_page "${CMAKE_BINARY_DIR}/docs/orvelscope.1.gz")
add_custom_command(
  OUTPUT "${man_page}"
  COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_BINARY_DIR}/docs"
  COMMAND gzip -9nc "${CMAKE_SOURCE_DIR}/docs/orvelscope.1" > "${man_page}"
  DEPENDS "${CMAKE_SOURCE_DIR}/docs/orvelscope.1"
  COMMENT "Packing the manual page"
  VERBATIM)
add_custom_target(man_page ALL DEPENDS "${man_page}")
add_dependencies(distribution man_page)
install(FILES "${man_page}" DESTINATION share/man/man1)

install(FILES CHANGELOG.md LICENSE docs/ACCURACY.md docs/BENCHMARKS.md DESTINATION ${documents})
install(FILES assets/fonts/LICENSE.txt DESTINATION ${documents} RENAME LICENSE.fonts)
install(FILES docs/copyright DESTINATION ${documents})

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME orvel-scope)
set(CPACK_PACKAGE_VENDOR Quillmere)
set(CPACK_PACKAGE_CONTACT "Quillmere <orvel-scope@quillmere.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "real-time audio analyser, as a plug-in and as a program")
set(CPACK_PACKAGE_DESCRIPTION
  "Scope, spectrum, stereo field and level meters for mixing and mastering, as a\n\
plug-in for hosts on Linux and as a program that plays and measures recordings.\n\
Audio passes through bit for bit.")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_FILE_NAME
  "${CPACK_PACKAGE_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/DropLdconfig.cmake")
# A folder made under another umask would carry that into every system.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
