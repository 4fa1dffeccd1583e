# What an installation holds beside the programs, and the Debian package. `cmake --install` honours DESTDIR; `cpack -G DEB` makes the
# package of an optimised build whose prefix is /usr (tools/check_package.sh does all of it).
include(GNUInstallDirs)
set(QUILLMETER_RELEASE_DATE "2026-11-21" CACHE STRING "Date of this release, as the software centre shows it")
set(integration "${PROJECT_BINARY_DIR}/integration")
set(application_id com.kesto.Quillmeter)

foreach(file IN ITEMS ${application_id}.metainfo.xml ${application_id}.service)
  configure_file("${PROJECT_SOURCE_DIR}/data/desktop/${file}.in" "${integration}/${file}" @ONLY)
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/data/debian/copyright.in" "${integration}/copyright" @ONLY)

# Manual pages and the changelog are packed without the time of day, so that the same sources give the same package.
find_program(GZIP_PROGRAM gzip REQUIRED)
set(packed)
function(quillmeter_packed source name)
  add_custom_command(OUTPUT "${integration}/${name}.gz"
    COMMAND "${GZIP_PROGRAM}" -9nc "${source}" > "${integration}/${name}.gz" DEPENDS "${source}" VERBATIM)
  set(packed ${packed} "${integration}/${name}.gz" PARENT_SCOPE)
endfunction()
quillmeter_packed("${PROJECT_SOURCE_DIR}/data/man/quillmeter.1" quillmeter.1)
quillmeter_packed("${PROJECT_SOURCE_DIR}/data/man/quillmeterctl.1" quillmeterctl.1)
quillmeter_packed("${PROJECT_SOURCE_DIR}/data/debian/changelog" changelog)
add_custom_target(packed_documents ALL DEPENDS ${packed})

install(FILES "${PROJECT_SOURCE_DIR}/data/desktop/${application_id}.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${integration}/${application_id}.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${integration}/${application_id}.service" DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services")
install(FILES "${integration}/quillmeter.1.gz" "${integration}/quillmeterctl.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES "${integration}/copyright" "${integration}/changelog.gz" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
# Debian's zsh looks below /usr into a folder of its own.
set(zsh_folder site-functions)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(zsh_folder vendor-completions)
endif()
foreach(program IN ITEMS quillmeter quillmeterctl)
  set(completions "${PROJECT_SOURCE_DIR}/data/completions")
  install(FILES "${completions}/${program}.bash" DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME ${program})
  install(FILES "${completions}/_${program}" DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/${zsh_folder}")
  install(FILES "${completions}/${program}.fish" DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillmeter)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "The Quillmeter authors <maintainers@quillmeter.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/RemoveToolchainSections.cmake")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://${QUILLMETER_WEB_HOST}/")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded or asked at run time, where they are there: the Wayland platform, scalable icons of other applications, the session bus,
# batteries, characters for the Chinese interface.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "qt6-wayland, libqt6svg6, default-dbus-session-bus | dbus-session-bus, fonts-noto-cjk | fonts-wqy-microhei, tzdata, upower")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "pulseaudio | pipewire-pulse, xdg-desktop-portal")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "status of the machine and tokens of AI coding agents, in the tray")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Quillmeter shows battery, network, volume, memory and processor as one small
icon in the system tray, an overview in a popover and all of it in a dashboard
of cards that can be chosen, ordered and sized.
.
It counts, from the logs that they leave on the machine, the tokens that
Codex, Claude Code, Qwen Office, WorkBuddy, OpenCode, Hermes, OpenClaw and Pi
used today, this week and this month. Only usage counters and times are read,
and nothing leaves the machine. Screen time can be recorded, too.
.
The same figures are printed by quillmeterctl, in the terminal and as JSON.")
include(CPack)
