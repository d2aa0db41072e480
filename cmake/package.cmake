# What a user installs. On Linux: both programs, the window's entry in the desktop's menu, its icons and its
# pages, as a Debian package. On Windows: a zip with the programs and the readme. `cpack` in a build
# folder makes the one that belongs to it; scripts/package makes both.
if(NOT TARGET torvane)
  return()
endif()

set(TORVANE_RELEASE_DATE 2026-11-22)
set(packaging ${CMAKE_SOURCE_DIR}/packaging)

if(WIN32)
  install(TARGETS torvane torvane-cli RUNTIME DESTINATION .)
  install(FILES resources/readme.txt DESTINATION .)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME torvane-${PROJECT_VERSION}-windows)
  set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
  include(CPack)
  return()
endif()

# It reads files that others wrote: what the compiler can guard costs nothing to speak of.
if(NOT TORVANE_SANITIZE AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  foreach(room text disk prefix registry paths profile shell platform)
    target_compile_definitions(torvane_${room} PRIVATE _FORTIFY_SOURCE=2)
    target_compile_options(torvane_${room} PRIVATE
      "$<$<COMPILE_LANGUAGE:CXX>:-fstack-protector-strong>")
  endforeach()
  foreach(program torvane torvane-cli)
    target_link_options(${program} PRIVATE -Wl,-z,relro,-z,now)
  endforeach()
endif()

# Only what makes packages needs these two, so a build without them is a build all the same.
find_program(ICOTOOL icotool)
find_program(GZIP gzip)
if(NOT ICOTOOL OR NOT GZIP)
  message(STATUS "icotool or gzip not found: not making a Debian package")
  return()
endif()

include(GNUInstallDirs)
set(made ${CMAKE_BINARY_DIR}/package)
set(outputs)

# torvane_packed(NAME FOLDER): fills in packaging/NAME.in, and installs it compressed.
function(torvane_packed name folder)
  configure_file(${packaging}/${name}.in ${made}/${name} @ONLY)
  add_custom_command(OUTPUT ${made}/${name}.gz DEPENDS ${made}/${name} VERBATIM
    COMMAND ${GZIP} -9nkf ${made}/${name})
  install(FILES ${made}/${name}.gz DESTINATION ${folder})
  set(outputs ${outputs} ${made}/${name}.gz PARENT_SCOPE)
endfunction()

execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date -u -R -d ${TORVANE_RELEASE_DATE}
  OUTPUT_VARIABLE TORVANE_RELEASE_TIME OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
torvane_packed(torvane.1 ${CMAKE_INSTALL_MANDIR}/man1)
torvane_packed(torvane-cli.1 ${CMAKE_INSTALL_MANDIR}/man1)
torvane_packed(changelog ${CMAKE_INSTALL_DOCDIR})
install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})

# The pictures are those that Windows shows.
set(theme ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
foreach(size 16 32 48 64 256)
  set(picture ${made}/torvane-${size}.png)
  add_custom_command(OUTPUT ${picture} DEPENDS resources/icons/torvane.ico VERBATIM
    COMMAND ${ICOTOOL} --extract --width=${size} --output=${picture}
      ${CMAKE_SOURCE_DIR}/resources/icons/torvane.ico)
  install(FILES ${picture} DESTINATION ${theme}/${size}x${size}/apps RENAME torvane.png)
  list(APPEND outputs ${picture})
endforeach()
install(FILES resources/icons/torvane.svg DESTINATION ${theme}/scalable/apps)
add_custom_target(torvane_package_files ALL DEPENDS ${outputs})

install(TARGETS torvane torvane-cli)
install(FILES packaging/torvane-cli.bash RENAME torvane-cli
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES docs/torvane-cli.schema.json DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES packaging/torvane.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
configure_file(packaging/torvane.metainfo.xml.in ${made}/example.halvex.torvane.metainfo.xml @ONLY)
install(FILES ${made}/example.halvex.torvane.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME torvane)
set(CPACK_PACKAGE_VENDOR Halvex)
set(CPACK_PACKAGE_CONTACT "Halvex <torvane@halvex.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "edit the recent lists of Windows programs")
set(CPACK_PACKAGE_DESCRIPTION_FILE ${packaging}/description)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://halvex.example/torvane)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Wine and xdg-open start what the user opens; the rest is how Qt draws icons and reaches Wayland.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
  "adwaita-icon-theme | breeze-icon-theme, libqt6svg6, qt6-wayland, wine, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
