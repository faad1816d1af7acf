# A Debian package, made by cpack.
set(VELLOMIR_PACKAGER "The Vellomir authors <authors@vellomir.example.org>" CACHE STRING
    "Who answers for the package: name and mail address")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vellomir)
set(CPACK_PACKAGE_CONTACT ${VELLOMIR_PACKAGER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Call the numbers of a Bingo game")
set(CPACK_PACKAGE_DESCRIPTION
"Vellomir is for the caller of a Bingo game with the numbers 1 to 75. It
shows the current number, the four before it and a large board of all
numbers, the called ones in red.
.
It draws numbers at random, at once or every few seconds, speaks each
call aloud and shows the pattern that is played.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/permissions.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${VELLOMIR_PUBLISHER_ADDRESS})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# To see and to hear it as it is meant; the libraries are added by dpkg-shlibdeps.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "fonts-liberation, speech-dispatcher, speech-dispatcher-audio-plugins, speech-dispatcher-espeak-ng")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils)

include(CPack)
