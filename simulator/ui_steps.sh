# shellcheck shell=bash
# The steps of an operator: sourced by scripts that set `television` to the name of a television. Each step prints the
# key and what the screen then shows, or ends the script with the reason on standard error.

steps=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
expected=''
patience=${VELMORA_PATIENCE:-30} # seconds

tvctl() { "$steps/tvctl" -n "${television:?}" "$@"; }

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

say() { printf '%-11s %s\n' "$@"; } # KEY WHAT

press() { # KEY NAME [OPTION]: presses a key and waits until the name has the focus, or as that option of `tvctl wait` says
    local seen
    tvctl press "$1" >/dev/null
    seen=$(tvctl wait -t "$patience" "${3---focus}" "$2")
    say "$1" "$seen"
}

go() { # KEY FOCUS: presses a key, up to eight times, until the focus is on a name
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

choose() { # TITLE NUMBER: takes the number of a picker
    press OK "$1" --gone
    tvctl wait -t "$patience" --focus "$2" >/dev/null
}

asked() { # CALL: the NCP host was asked this since the last time, and nothing else
    local calls deadline=$((SECONDS + patience))
    expected+=${expected:+ }$1
    until calls=$(tvctl calls) && [[ $calls == "$expected" ]]; do
        [[ $expected == "$calls"* && $SECONDS -lt $deadline ]] || fail "the NCP host was asked $calls, not $expected"
        sleep 0.1
    done
    say 'NCP host' "$1"
}
