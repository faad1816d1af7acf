"""Runs the programs of bench/ on a screen of their own and prints what they take.

    figures.py FOLDER-OF-THE-PROGRAMS
"""

import os
import statistics
import subprocess
import sys
import tempfile
import time

RUNS = 15


def one_run(program, environment):
    """Seconds and peak memory in MB of one run of a program."""
    start = time.monotonic()
    child = subprocess.Popen([program], env=environment, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    seconds = time.monotonic() - start
    if status:
        sys.exit(f"{program} ended with {status}")
    return seconds, usage.ru_maxrss / 1024


def print_start(folder, environment):
    runs = {"bench_start": [], "bench_bare": []}
    for count in range(RUNS + 1):
        for program, samples in runs.items():
            sample = one_run(f"{folder}/{program}", environment)
            if count:  # the first run of each only fills the caches
                samples.append(sample)
    print(f"{'from start to the first picture':32} {'median':>8} {'bare window':>12} {'ratio':>8}")
    for i, name in enumerate(("milliseconds", "megabytes")):
        program, bare = (statistics.median(sample[i] for sample in runs[name]) for name in runs)
        scale = 1 if i else 1000
        print(f"{name:32} {program * scale:8.1f} {bare * scale:12.1f} {program / bare:8.2f}")


def main(folder):
    with tempfile.TemporaryDirectory() as home:
        environment = {
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "HOME": home,
            "XDG_RUNTIME_DIR": home,
            "QT_QPA_PLATFORM": "xcb",
        }
        screen = subprocess.Popen(
            ["Xvfb", "-displayfd", "1", "-screen", "0", "1600x1000x24", "-nolisten", "tcp", "-noreset"],
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        environment["DISPLAY"] = f":{screen.stdout.readline().strip()}"
        try:
            print_start(folder, environment)
            print()
            print(subprocess.run([f"{folder}/bench_board"], env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=True).stdout, end="")
        finally:
            screen.terminate()
            screen.wait()


if __name__ == "__main__":
    main(*sys.argv[1:])
