# shellcheck shell=bash
# Operator steps for scripts that set `television` to the name of a television and source this file. Each step prints
# the key and the resulting screen, or exits the script with the reason on standard error.

steps=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
expected=''
timeout=${VELMORA_TIMEOUT:-30} # seconds

tvctl() { "$steps/tvctl" -n "${television:?}" "$@"; }

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

say() { printf '%-11s %s\n' "$@"; } # KEY TEXT

press() { # KEY NAME [OPTION]: presses a key, then runs `tvctl wait OPTION NAME` (default: --focus)
    local seen
    tvctl press "$1" >/dev/null
    seen=$(tvctl wait -t "$timeout" "${3---focus}" "$2")
    say "$1" "$seen"
}

go() { # KEY NAME: presses a key, up to eight times, until NAME has the focus
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
    fail "'$2' not reached with $1"
}

choose() { # TITLE NUMBER: accepts NUMBER, which the picker TITLE shows
    press OK "$1" --gone
    tvctl wait -t "$timeout" --focus "$2" >/dev/null
}

expect_call() { # CALL: waits until the NCP host has received CALL, and no other new call
    local calls deadline=$((SECONDS + timeout))
    expected+=${expected:+ }$1
    until calls=$(tvctl calls) && [[ $calls == "$expected" ]]; do
        [[ $expected == "$calls"* && $SECONDS -lt $deadline ]] || fail "the NCP host got $calls, expected $expected"
        sleep 0.1
    done
    say 'NCP host' "$1"
}
