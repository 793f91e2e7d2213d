# shellcheck shell=bash
# What an operator does with the application of a television, and sees: sourced by scripts that set `television` to
# its name. Each step prints the key and what the screen then says, or ends the script with a line that says why not.

steps=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
expected=''
patience=${VELMORA_PATIENCE:-30} # seconds

tvctl() { "$steps/tvctl" -n "${television:?}" "$@"; }

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

say() { # KEY WHAT
    printf '%-11s %s\n' "$1" "$2"
}

press() { # KEY FOCUS [TIMES]: presses a key until the focus is on a name
    local seen
    tvctl press "$1${3:+*$3}" >/dev/null
    seen=$(tvctl wait -t "$patience" --focus "$2")
    say "$1${3:+ x$3}" "$seen"
}

step() { # KEY TIMES NUMBER: in a picker
    local seen
    tvctl press "$1*$2" >/dev/null
    seen=$(tvctl wait -t "$patience" --number "$3")
    say "$1 x$2" "$seen"
}

go() { # KEY FOCUS: presses a key again and again until the focus is on a name
    local before seen
    for _ in {1..8}; do
        before=$(tvctl see)
        tvctl press "$1" >/dev/null
        for _ in {1..1000}; do
            seen=$(tvctl see)
            [[ $seen == "$before" ]] || break
        done
        say "$1" "$seen"
        [[ $seen != *"[$2]"* ]] || return 0
    done
    fail "$1 does not lead to '$2'"
}

open_picker() { # TITLE NUMBER
    local seen
    tvctl press OK >/dev/null
    tvctl wait -t "$patience" "$1" >/dev/null
    seen=$(tvctl wait -t "$patience" --number "$2")
    say OK "$seen"
}

choose() { # TITLE NUMBER
    tvctl press OK >/dev/null
    tvctl wait -t "$patience" --gone "$1" >/dev/null
    say OK "$(tvctl wait -t "$patience" --focus "$2")"
}

asked() { # CALL: the NCP host was asked this since the last time, and nothing else
    local i calls=''
    expected+=${expected:+ }$1
    for ((i = 0; i < patience * 10; ++i)); do
        calls=$(tvctl calls)
        if [[ $calls == "$expected" ]]; then
            say 'NCP host' "$1"
            return
        fi
        [[ $expected == "$calls"* ]] || break
        sleep 0.1
    done
    fail "the NCP host was asked $calls, not $expected"
}
