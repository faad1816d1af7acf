# The Debian packages that the scripts of this project need, one list a purpose. Sourced by tools/install;
# a package is named here when a script or the build uses it itself, not when another one pulls it in.
# shellcheck shell=bash disable=SC2034

# To compile and link.
packages_build=(
    g++
    cmake
    ninja-build
    qt6-base-dev
    libxcb1-dev
    libxcb-screensaver0-dev
)

# What the running program wants beside the libraries that it is linked with.
packages_run=(
    fonts-liberation # faces with the widths of Courier New and MS Sans Serif
    speech-dispatcher
    speech-dispatcher-audio-plugins
    speech-dispatcher-espeak-ng
)

# A desktop without a screen, and hands and eyes for it: tests/support/desktop.py.
packages_desktop=(
    xvfb
    xauth # xvfb-run asks for it
    openbox
    xsettingsd # changes the scale
    xdotool
    xsel
    x11-utils
    x11-xserver-utils # xset
    suckless-tools # xssstate: whether the screen is blank
    imagemagick # pictures: tools/picture
    dbus-daemon
    at-spi2-core
    python3
    python3-gi
    gir1.2-atspi-2.0
)

# tools/fuzz/run: what compiles and fuzzes, and what names the lines in its reports.
packages_fuzz=(
    clang
    libclang-rt-dev
    llvm
)

# tools/format and tools/lint.
packages_lint=(
    clang-format
    clang-tidy
    shellcheck
)

# tests/tst_windows.cpp reads what was printed.
packages_print=(
    poppler-utils
)

# tests/package.sh: makes, checks and installs the Debian package.
packages_package=(
    dpkg-dev
    gzip
    lintian
    desktop-file-utils
    appstream
    man-db
    speech-dispatcher
    speech-dispatcher-audio-plugins
    speech-dispatcher-espeak-ng
)

# tools/windows: compiles and links for Windows, packs the result.
packages_windows=(
    g++-mingw-w64-x86-64-posix
    mingw-w64-x86-64-dev
    imagemagick
    zip
    nsis
)

# tools/windows_qt: unpacks and configures Qt.
packages_windows_qt=(
    xz-utils
    perl
)

# tools/windows check: plays the program under Wine.
packages_wine=(
    wine
    wine64
    fonts-liberation
    xauth # xvfb-run asks for it
)

# tests/outside.py: the screen reader whose words it compares.
packages_screen_reader=(
    orca
    procps
)

# tools/on: makes another Debian in a folder.
packages_on=(
    debootstrap
    debian-archive-keyring
    git
)
