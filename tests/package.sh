#!/usr/bin/env bash
# The Debian package, from making it to its removal: tests/package.sh SOURCE BUILD
# Checks it, installs it with apt, uses the installed program, and sees that nothing of it is left behind.
set -euo pipefail
source_folder=$1
build=$2

fail() {
    echo "package: $*" >&2
    exit 1
}

if ((EUID != 0)); then
    echo "package: skipped, because installing a package needs root"
    exit 77
fi
dpkg-query --show vellomir >/dev/null 2>&1 && fail "vellomir is installed here; remove it first"

echo "== Make"
cmake -S "$source_folder" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVELLOMIR_TESTS=OFF >"$build.log"
cmake --build "$build" >>"$build.log" || fail "it does not build; see $build.log"
rm -f "$build"/*.deb
(cd "$build" && cpack) >>"$build.log" || fail "cpack failed; see $build.log"
package=$(echo "$build"/*.deb)
echo "$(basename "$package"), $(stat --format %s "$package") bytes"

echo "== Check"
lintian --allow-root --fail-on error,warning "$package"
desktop-file-validate "$source_folder/data/vellomir.desktop"
appstreamcli validate --no-net "$build"/packaging/*.metainfo.xml

echo "== Install"
what_is_left() { find /usr /etc /var/lib /opt -xdev -iname '*vellomir*' -not -path "$build/*" -not -path "$source_folder/*"; }
export DEBIAN_FRONTEND=noninteractive
before=$(what_is_left)
trap 'dpkg --purge vellomir >/dev/null 2>&1' EXIT
apt-get install --yes --no-install-recommends "$package" >"$build.log" 2>&1 || fail "apt-get failed; see $build.log"
[[ -n $(what_is_left) ]] || fail "nothing was installed"
man --warnings --encoding=UTF-8 vellomir 2>&1 >/dev/null | { ! grep .; } || fail "the manual page has faults"

echo "== Use"
xvfb-run -a -s "-screen 0 1600x1000x24" dbus-run-session -- \
    /usr/bin/python3 -B "$source_folder/tests/outside.py" /usr/bin/vellomir Outside.test_windows

echo "== Remove"
apt-get remove --yes vellomir >"$build.log" 2>&1 || fail "apt-get remove failed; see $build.log"
[[ $(what_is_left) == "$before" ]] || fail "left behind: $(what_is_left)"
echo "nothing is left behind"
