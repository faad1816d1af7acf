#!/bin/bash
# What is really heard: the sound of the voice against the sound that another client of the same service makes of
# the texts as they should be, bit for bit; then a service that is killed in mid-word.
#   speech_sound.sh SPEECH_GAME
# Needs speech-dispatcher with espeak-ng and its ALSA output; no sound card, session bus or display. Everything
# happens in a private folder, and the sound goes into a file there, faster than it could be heard.
set -u
game=$1
for program in speech-dispatcher spd-say python3; do
    command -v "$program" >/dev/null || { echo "skipped: $program is not installed"; exit 77; }
done

work=$(mktemp -d)
mkdir -p "$work/run" "$work/config/speech-dispatcher/modules"
chmod 700 "$work/run"
export XDG_RUNTIME_DIR=$work/run HOME=$work XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache
export LANG=C.UTF-8 PULSE_SERVER=unix:$work/no-pulse
unset LC_ALL LANGUAGE DBUS_SESSION_BUS_ADDRESS DISPLAY WAYLAND_DISPLAY SPEECHD_ADDRESS SPEECHD_CMD
socket=$work/run/speech-dispatcher/speechd.sock
trap 'kill $(jobs -p) 2>/dev/null; stop KILL; rm -rf "$work"' EXIT

cp /etc/speech-dispatcher/modules/espeak-ng.conf "$work/config/speech-dispatcher/modules/"
cat >"$work/config/speech-dispatcher/speechd.conf" <<CONF
LogLevel 1
AudioOutputMethod "alsa"
SymbolsPreproc "char"
SymbolsPreprocFile "gender-neutral.dic"
SymbolsPreprocFile "symbols.dic"
AddModule "espeak-ng" "sd_espeak-ng" "espeak-ng.conf"
DefaultModule espeak-ng
CONF

# record SOUND: the service that is started next speaks into the file SOUND.
record() {
    cat >"$work/.asoundrc" <<CONF
pcm.!default { type plug; slave { pcm "tofile"; format S16_LE; rate 22050; channels 1 } }
pcm.tofile { type file; slave.pcm null; file "$1"; format raw }
CONF
}

# Ends the service, if one runs, with a signal, and waits until it is gone.
stop() {
    local pid
    pid=$(cat "$work/run/speech-dispatcher/pid/speech-dispatcher.pid" 2>/dev/null) || return 0
    kill "-$1" "$pid" 2>/dev/null
    while kill -0 "$pid" 2>/dev/null; do sleep 0.05; done
}

fail() { echo "FAIL: $*"; exit 1; }

# expect COUNT LINE FILE: the line stands in the file so many times
expect() { [ "$(grep -cx "$2" "$3")" = "$1" ] || { cat "$3"; fail "not $1 times \"$2\""; }; }

# The texts as they should be, said independently of the program.
texts() {
    local n word
    for n in $(seq 1 75); do
        case $(((n - 1) / 15)) in 0) word=Bee ;; 1) word=Eye ;; 2) word=En ;; 3) word=Gee ;; 4) word=Oh ;; esac
        echo "$word, $n"
        if [ "$n" = 4 ]; then echo "And After"
        elif [ "$n" -lt 10 ]; then echo "$word, $n"
        else echo "$word, ${n:0:1} , ${n:1:1}"
        fi
    done
}

# ---- The sound of a game

record "$work/expected.raw"
speech-dispatcher --spawn --communication-method unix_socket --socket-path "$socket" 2>/dev/null || fail "no service"
until grep -q "00010000 .*$socket" /proc/net/unix; do sleep 0.05; done
texts | while read -r text; do spd-say -w -P message -y "English (America)" -- "$text"; done
stop TERM

record "$work/game.raw"
"$game" >"$work/game.log" || fail "speech_game"
expect 150 end "$work/game.log"
stop TERM
cmp "$work/expected.raw" "$work/game.raw" || fail "the sound differs"
python3 - "$work/game.raw" <<'PYTHON' || fail "that was no speech"
import array, sys
samples = array.array("h", open(sys.argv[1], "rb").read())
loud = sum(abs(sample) > 1000 for sample in samples)
print(f"{len(samples) / 22050:.1f} s, {100 * loud / len(samples):.0f} % of it loud")
sys.exit(not (len(samples) > 60 * 22050 and loud > len(samples) / 10))
PYTHON

# ---- Killed in mid-word: that text fails at once, and the next one starts the service again

record "$work/killed.raw"
"$game" "$(printf 'seventy-five, %.0s' $(seq 300))" "And After" >"$work/killed.log" &
player=$!
until [ -s "$work/killed.raw" ]; do sleep 0.01; done
stop KILL
wait $player || fail "speech_game after the kill"
expect 1 "failed 2" "$work/killed.log"
expect 1 end "$work/killed.log"
