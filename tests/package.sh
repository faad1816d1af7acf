#!/usr/bin/env bash
# The Debian package, from making it to its removal: tests/package.sh SOURCE BUILD
# Checks it, installs it with apt, uses the installed program, and sees that nothing of it is left behind.
set -euxo pipefail
source_folder=$1
build=$2

((EUID == 0)) || exit 77 # installing a package needs root
dpkg-query --show vellomir && exit 1 # Remove it first.

cmake -S "$source_folder" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVELLOMIR_TESTS=OFF
rm -f "$build"/*.deb
cmake --build "$build" --target package
package=$(echo "$build"/*.deb)

lintian --allow-root --fail-on error,warning "$package"
desktop-file-validate "$source_folder/data/vellomir.desktop"
appstreamcli validate --no-net "$build"/packaging/*.metainfo.xml

what_is_left() { find /usr /etc /var/lib /opt -xdev -iname '*vellomir*' -not -path "$build/*" -not -path "$source_folder/*"; }
before=$(what_is_left)
trap 'dpkg --purge vellomir' EXIT
DEBIAN_FRONTEND=noninteractive apt-get install --yes --no-install-recommends "$package"
[[ -z $(man --warnings --encoding=UTF-8 vellomir 2>&1 >/dev/null) ]]
xvfb-run -a -n 160 -s "-screen 0 1600x1000x24 -noreset" dbus-run-session -- \
    "$source_folder/tests/outside.py" /usr/bin/vellomir Outside.test_hands
apt-get remove --yes vellomir
[[ $(what_is_left) == "$before" ]]
