# shellcheck shell=bash
# What the cases inside a television and outside of it share; whoever sources it says how to fail.

equal() { # WHAT EXPECTED ACTUAL
    [[ $2 == "$3" ]] || fail "$1: expected <$2>, got <$3>"
}

until_true() { # SECONDS COMMAND...
    local end=$((SECONDS + $1))
    shift
    until "$@"; do
        ((SECONDS < end)) || return 1
        sleep 0.02
    done
}
