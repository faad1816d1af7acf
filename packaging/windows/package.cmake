# A folder that runs where it is unpacked, with all that it needs; cpack packs it into a zip.
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

# The licences of all of them, as Debian has them.
install(FILES LICENSE RENAME Vellomir.txt DESTINATION licences)
install(FILES packaging/windows/licences.txt RENAME read-me.txt DESTINATION licences)
install(FILES /usr/share/doc/qt6-base-dev/copyright RENAME Qt.txt DESTINATION licences)
install(FILES /usr/share/doc/gcc-mingw-w64-base/copyright RENAME gcc.txt DESTINATION licences)
install(FILES /usr/share/doc/mingw-w64-x86-64-dev/copyright RENAME mingw-w64.txt DESTINATION licences)
foreach(licence IN ITEMS LGPL-3 GPL-3)
    install(FILES /usr/share/common-licenses/${licence} RENAME ${licence}.txt DESTINATION licences)
endforeach()

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME vellomir-${PROJECT_VERSION}-windows)
set(CPACK_STRIP_FILES ON)
include(CPack)
