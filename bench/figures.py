"""Runs the programs of bench/ on screens of their own and prints what they take, each figure beside a bare one.

    figures.py BUILD-FOLDER
"""

import contextlib
import glob
import os
import pathlib
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time

TURNS = 30
COLD_TURNS = 5
SPEECH_RUNS = 3
IDLE_SECONDS = 30

# The speech service of these figures speaks into a file, faster than it could be heard.
SPEECH_SERVICE = """\
LogLevel 1
Timeout 0
AudioOutputMethod "alsa"
AddModule "espeak-ng" "sd_espeak-ng" "espeak-ng.conf"
DefaultModule espeak-ng
"""
SOUND = """\
pcm.!default { type plug; slave { pcm "tofile"; format S16_LE; rate 22050; channels 1 } }
pcm.tofile { type file; slave.pcm null; file "%s"; format raw }
"""


class Table:
    """Prints a line a figure; `aim` is a limit for its ratio, for its value, or for its difference."""

    def __init__(self):
        print(f"{'':52} {'Vellomir':>9} {'bare':>9} {'ratio':>7}   aim")

    def row(self, name, unit, value, bare, aim=None):
        ratio = value / bare if bare else float("inf")
        verdict = ""
        if aim:
            kind, limit = aim
            reached = {"ratio": ratio, "value": value, "difference": value - bare}[kind]
            verdict = f"{kind} < {limit}: {'met' if reached < limit else 'NOT met'}"
        print(f"{name + ', ' + unit:52} {value:9.2f} {bare:9.2f} {ratio:7.2f}   {verdict}", flush=True)

    def missing(self, name, reason):
        print(f"{name:52} not measured: {reason}", flush=True)


@contextlib.contextmanager
def screen(environment, size, scale=1):
    """A screen of its own, as the environment of the programs that run on it."""
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", "1", "-screen", "0", size + "x24", "-nolisten", "tcp", "-noreset"],
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        text=True,
    )
    display = f":{server.stdout.readline().strip()}"
    try:
        yield environment | {"DISPLAY": display, "QT_SCALE_FACTOR": str(scale)}
    finally:
        server.terminate()
        server.wait()


def start(command, environment):
    return subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def first_picture(command, environment):
    """Milliseconds and peak memory in MB of a program that ends at its first picture.

    The time in which other programs kept it from running is not counted."""
    begin = time.monotonic_ns()
    child = start(command, environment)
    os.waitid(os.P_PID, child.pid, os.WEXITED | os.WNOWAIT)
    took = time.monotonic_ns() - begin
    waited = int(pathlib.Path(f"/proc/{child.pid}/schedstat").read_text().split()[1])
    _, status, usage = os.wait4(child.pid, 0)
    if status:
        sys.exit(f"{command} ended with {status}")
    return (took - waited) / 1e6, usage.ru_maxrss / 1024


def in_turns(count, *measurements):
    """The medians of measurements that take turns; the first turn only fills the caches."""
    turns = [[measure() for measure in measurements] for _ in range(count + 1)][1:]
    return [[statistics.median(column) for column in zip(*results)] for results in zip(*turns)]


def lines(command, environment):
    """What bench_board prints: name, value, bare value."""
    run = subprocess.run(
        command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=True
    )
    fields = [line.split("\t") for line in run.stdout.splitlines()]
    return [(name, float(value), float(bare)) for name, value, bare in fields]


def measure_start(table, program, bare, lettered, environment):
    """Beside a window with nothing in it, and beside one with a line in each of the program's faces."""
    (warm, memory), *others = in_turns(
        TURNS, *(lambda p=p: first_picture(p, environment) for p in (program, bare, lettered))
    )
    aims = ((None, None), (("ratio", 1.25), ("ratio", 1.1)))
    for beside, (other_warm, other_memory), aim in zip(("an empty window", "two lines"), others, aims):
        table.row(f"start to the first picture, beside {beside}", "ms", warm, other_warm, aim[0])
        table.row(f"peak memory until then, beside {beside}", "MB", memory, other_memory, aim[1])

    def cold(command):
        os.sync()
        pathlib.Path("/proc/sys/vm/drop_caches").write_text("3")
        return first_picture(command, environment)

    try:
        (milliseconds, _), (bare_milliseconds, _) = in_turns(COLD_TURNS, lambda: cold(program), lambda: cold(bare))
        table.row("start from cold", "ms", milliseconds, bare_milliseconds)
    except OSError as error:
        table.missing("start from cold", f"the system's file cache cannot be emptied ({error.strerror})")


def measure_size(table, program, bare, folder):
    sizes = []
    for file in (program, bare):
        subprocess.run(["strip", "-o", f"{folder}/stripped", file], check=True)
        sizes.append(os.path.getsize(f"{folder}/stripped") / 1024)
    table.row("program file, stripped", "KB", *sizes)


def measure_board(table, board, games, environment, suffix=""):
    for name, value, bare in lines([board, games], environment):
        if name.startswith("memory"):
            table.row(name + ", after 200 ones" + suffix, "MB", value, bare)
        else:
            table.row(name + suffix, "ms", value, bare, ("ratio", 4) if name == "a call" else None)


def measure_service(table, program, desktop, stopped, missing):
    """The start, by what the speech service is up to; where there is none, an error box is the first picture."""
    (running, _), (starting, _), (box, _) = in_turns(
        TURNS, *(lambda e=environment: first_picture(program, e) for environment in (desktop, stopped, missing))
    )
    table.row("start with the speech service not running yet", "ms", starting, running, ("difference", 5))
    table.row("start to the error box without a service", "ms", box, running, ("difference", 5))


def measure_speech(table, board, home, environment, suffix):
    """The program itself starts the service, anew in each run."""
    runs = []
    for _ in range(SPEECH_RUNS):
        end_speech(home)
        runs.append(lines([board, "speech"], environment))
    for figures in zip(*runs):
        (name, *_), values, bares = zip(*figures)
        typical = max if name.startswith("the longest") else statistics.median
        table.row(f"standstill, {name}{suffix}", "ms", typical(values), typical(bares), ("value", 10))


def wakeups(process):
    status = "".join(pathlib.Path(file).read_text() for file in glob.glob(f"/proc/{process.pid}/task/*/status"))
    return sum(int(line.split()[1]) for line in status.splitlines() if line.startswith("voluntary_ctxt_switches"))


def measure_idle(table, program, bare, environment):
    processes = [start(program, environment), start([bare, "stay"], environment)]
    window = ["xdotool", "search", "--sync", "--onlyvisible", "--name", "^Vellomir$", "windowfocus"]
    subprocess.run(window, env=environment, check=True, timeout=20, stdout=subprocess.DEVNULL)
    time.sleep(3)
    before = [wakeups(process) for process in processes]
    time.sleep(IDLE_SECONDS)
    after = [wakeups(process) for process in processes]
    for process in processes:
        process.terminate()
        process.wait()
    minutes = IDLE_SECONDS / 60
    table.row("wakeups when idle", "a minute", *((b - a) / minutes for a, b in zip(before, after)))


def configure_speech(home):
    """Answers the file that the sound goes into."""
    config = pathlib.Path(home, ".config/speech-dispatcher")
    shutil.copytree("/etc/speech-dispatcher/modules", config / "modules")
    (config / "speechd.conf").write_text(SPEECH_SERVICE)
    sound = pathlib.Path(home, "sound")
    pathlib.Path(home, ".asoundrc").write_text(SOUND % sound)
    return sound


def end_speech(home):
    with contextlib.suppress(FileNotFoundError, ProcessLookupError):
        os.kill(int(pathlib.Path(home, "speech-dispatcher/pid/speech-dispatcher.pid").read_text()), signal.SIGTERM)
        time.sleep(1)


def main(build):
    program, bare, lettered, board = (f"{build}/bench/bench_{name}" for name in ("start", "bare0", "bare2", "board"))
    table = Table()
    with tempfile.TemporaryDirectory() as home:
        environment = {
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "HOME": home,
            "XDG_RUNTIME_DIR": home,
            "QT_QPA_PLATFORM": "xcb",
        }
        sound = configure_speech(home)
        try:
            with screen(environment, "1600x1000") as desktop:
                measure_start(table, program, bare, lettered, desktop)
                measure_size(table, f"{build}/vellomir", bare, home)
                measure_board(table, board, "27", desktop)
                measure_speech(table, board, home, desktop, " with speech")
                if not sound.exists() or not sound.stat().st_size:
                    sys.exit("nothing was spoken")
                measure_idle(table, f"{build}/vellomir", bare, desktop)
                stopped = desktop | {"SPEECHD_ADDRESS": f"unix_socket:{home}/nobody"}
                missing = stopped | {"SPEECHD_CMD": "no-such-command"}
                measure_service(table, program, desktop, stopped, missing)
                measure_speech(table, board, home, missing, " without a service")
            with screen(environment, "3840x2160", scale=2) as desktop:
                measure_board(table, board, "3", desktop, " at 4K")
        finally:
            end_speech(home)


if __name__ == "__main__":
    main(*sys.argv[1:])
