#!/usr/bin/env bash
# Runs a program of the asan preset: tests/sanitized.sh PROGRAM ARGUMENT...
# Where the system does not let a process trace itself, as in some containers, it runs without the search for leaks.
set -euo pipefail
support=$(cd "$(dirname "$0")" && pwd)/support
export QT_QPA_PLATFORM=offscreen
export UBSAN_OPTIONS=print_stacktrace=1
export LSAN_OPTIONS=suppressions=$support/lsan.supp:print_suppressions=0

if [[ $("$(dirname "$1")/fuzz_entry" -help=1 2>&1) == *"LeakSanitizer has encountered a fatal error"* ]]; then
    echo "Leaks are not looked for: LeakSanitizer cannot work here."
    export ASAN_OPTIONS=detect_leaks=0
fi
exec "$@"
