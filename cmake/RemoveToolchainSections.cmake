# Run by CPack on the installed tree: takes what names the compiler out of the programs, as Debian's own packages do.
file(GLOB_RECURSE programs "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/bin/*" "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/libexec/*")
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs} COMMAND_ERROR_IS_FATAL ANY)
