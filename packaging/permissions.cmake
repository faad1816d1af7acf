# Run by cpack before it packs: folders have the same permissions whatever the umask of who builds.
execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -type d -exec chmod 755 {} +
    COMMAND_ERROR_IS_FATAL ANY)
