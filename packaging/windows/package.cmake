# A folder that runs where it is put, with all that it needs; tools/windows makes the zip and the setup from it.
install(TARGETS vellomir RUNTIME DESTINATION .)
install(FILES data/help.txt DESTINATION .)

# Qt's libraries and the compiler's.
install(IMPORTED_RUNTIME_ARTIFACTS Qt6::Core Qt6::Gui Qt6::PrintSupport Qt6::Widgets RUNTIME DESTINATION .)
install(FILES $<TARGET_FILE:Qt6::QWindowsIntegrationPlugin> DESTINATION platforms)
foreach(library IN ITEMS libgcc_s_seh-1 libstdc++-6 libwinpthread-1)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}.dll
        OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    install(FILES ${file} DESTINATION .)
endforeach()
install(CODE "
    file(GLOB_RECURSE libraries \"\${CMAKE_INSTALL_PREFIX}/*.dll\")
    execute_process(COMMAND ${CMAKE_STRIP} \${libraries} COMMAND_ERROR_IS_FATAL ANY)")

# The licences of all of them, as Debian has them, and their versions.
function(version_of package variable)
    execute_process(COMMAND dpkg-query --show --showformat \${Version} ${package}
        OUTPUT_VARIABLE version COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} ${version} PARENT_SCOPE)
endfunction()
version_of(gcc-mingw-w64-x86-64-posix-runtime gcc_version)
version_of(mingw-w64-x86-64-dev mingw_w64_version)
version_of(nsis-common nsis_version)
set(packaged ${PROJECT_BINARY_DIR}/packaging)
configure_file(packaging/windows/licences.txt.in ${packaged}/licences.txt @ONLY)
install(FILES LICENSE RENAME Vellomir.txt DESTINATION licences)
install(FILES ${packaged}/licences.txt RENAME read-me.txt DESTINATION licences)
install(FILES /usr/share/doc/qt6-base-dev/copyright RENAME Qt.txt DESTINATION licences)
install(FILES /usr/share/doc/gcc-mingw-w64-base/copyright RENAME gcc.txt DESTINATION licences)
install(FILES /usr/share/doc/mingw-w64-x86-64-dev/copyright RENAME mingw-w64.txt DESTINATION licences)
install(FILES /usr/share/doc/nsis-common/copyright RENAME NSIS.txt DESTINATION licences)
foreach(licence IN ITEMS LGPL-3 GPL-3)
    install(FILES /usr/share/common-licenses/${licence} RENAME ${licence}.txt DESTINATION licences)
endforeach()

# The publisher as the setup's script reads it.
foreach(text IN ITEMS NAME RIGHTS)
    string(REPLACE "$" "$$" ${text} "${VELLOMIR_PUBLISHER_${text}}")
    string(REPLACE "\"" "$\\\"" ${text} "${${text}}")
endforeach()
configure_file(packaging/windows/product.nsh.in ${PROJECT_BINARY_DIR}/generated/product.nsh @ONLY)
