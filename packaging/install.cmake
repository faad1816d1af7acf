# What is installed and where; the help text always lies beside the executable.
set(staging ${PROJECT_BINARY_DIR}/packaging)
set(program_folder lib/vellomir)
set(doc_folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/vellomir)
set(VELLOMIR_SCREENSHOT_ADDRESS "https://vellomir.example.org/vellomir.png" CACHE STRING
    "Where a software centre finds the picture of the window")

install(TARGETS vellomir RUNTIME DESTINATION ${program_folder})
install(FILES data/help.txt DESTINATION ${program_folder})
file(MAKE_DIRECTORY ${staging})
file(CREATE_LINK ../${program_folder}/vellomir ${staging}/vellomir SYMBOLIC)
install(FILES ${staging}/vellomir DESTINATION ${CMAKE_INSTALL_BINDIR})

configure_file(data/vellomir.metainfo.xml.in ${staging}/org.example.vellomir.metainfo.xml @ONLY)
install(FILES ${staging}/org.example.vellomir.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/metainfo)
install(FILES data/vellomir.desktop DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications)
foreach(size IN ITEMS 16 32 48 128 256)
    install(FILES data/icons/vellomir-${size}.png
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/${size}x${size}/apps RENAME vellomir.png)
endforeach()
install(FILES data/icons/vellomir.svg DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps)

# Compresses a file into the staging folder, in the same bytes every time.
find_program(VELLOMIR_GZIP gzip REQUIRED)
function(compress file name)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    execute_process(COMMAND ${VELLOMIR_GZIP} -9nc ${file} OUTPUT_FILE ${staging}/${name}
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
configure_file(data/vellomir.1.in ${staging}/vellomir.1 @ONLY)
compress(${staging}/vellomir.1 vellomir.1.gz)
compress(packaging/changelog changelog.gz)
install(FILES ${staging}/vellomir.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${staging}/changelog.gz packaging/copyright DESTINATION ${doc_folder})
