#!/bin/bash
# What is really heard: the sound of a game's calls against the sound that another client of the same service makes of
# the texts as they should be, bit for bit.
#   speech_sound.sh SPEECH_GAME
# Needs speech-dispatcher with espeak-ng and its ALSA output; no sound card, session bus or display. Everything
# happens in a private folder, and the sound goes into a file there, faster than it could be heard.
set -u
game=$1
for program in speech-dispatcher spd-say; do
    command -v "$program" >/dev/null || { echo "skipped: $program is not installed"; exit 77; }
done

work=$(mktemp -d)
mkdir -p "$work/run" "$work/config/speech-dispatcher/modules"
chmod 700 "$work/run"
export XDG_RUNTIME_DIR=$work/run HOME=$work XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache
export LANG=C.UTF-8 PULSE_SERVER=unix:$work/no-pulse
unset LC_ALL LANGUAGE DBUS_SESSION_BUS_ADDRESS DISPLAY WAYLAND_DISPLAY SPEECHD_ADDRESS SPEECHD_CMD
socket=$work/run/speech-dispatcher/speechd.sock
trap 'stop KILL; rm -rf "$work"' EXIT

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

record "$work/expected.raw"
speech-dispatcher --spawn --communication-method unix_socket --socket-path "$socket" 2>/dev/null || fail "no service"
until grep -q "00010000 .*$socket" /proc/net/unix; do sleep 0.05; done
texts | while read -r text; do spd-say -w -P message -y "English (America)" -- "$text"; done
stop TERM

record "$work/game.raw"
[ "$("$game")" = "150 spoken" ] || fail "speech_game"
stop TERM
cmp "$work/expected.raw" "$work/game.raw" || fail "the sound differs"
# A minute of sound that is no silence.
[ "$(tr -d '\000' <"$work/game.raw" | wc -c)" -gt $((60 * 2 * 22050)) ] || fail "that was no speech"
