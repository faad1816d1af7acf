# What every target of the project is compiled with.
add_library(vellomir_options INTERFACE)

target_compile_definitions(vellomir_options INTERFACE
    QT_NO_CAST_TO_ASCII
    QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    VELLOMIR_NAME="${PROJECT_NAME}"
    VELLOMIR_VERSION="${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")

# For gcc and clang, which compile the program for Linux and for Windows.
target_compile_options(vellomir_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(VELLOMIR_WERROR)
    target_compile_options(vellomir_options INTERFACE -Werror)
endif()
if(VELLOMIR_SANITIZE)
    target_compile_options(vellomir_options INTERFACE
        -fsanitize=${VELLOMIR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(vellomir_options INTERFACE -fsanitize=${VELLOMIR_SANITIZE})
endif()
# What users get is the same in every byte, wherever and whenever it is compiled.
if(CMAKE_BUILD_TYPE STREQUAL Release)
    target_compile_options(vellomir_options INTERFACE -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
    if(WIN32)
        target_link_options(vellomir_options INTERFACE -Wl,--no-insert-timestamp)
    endif()
endif()
# A library that is named but not used costs start-up time and memory.
target_link_options(vellomir_options INTERFACE -Wl,--as-needed)
