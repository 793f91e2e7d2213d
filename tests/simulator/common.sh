# shellcheck shell=bash disable=SC2034 # whoever sources it uses them
# What the cases that drive a television and those that look at one share.
set -uo pipefail

simulator=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../../simulator
scratch=$(mktemp -d)

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

until_true() { # SECONDS COMMAND...
    local end=$((SECONDS + $1))
    shift
    until "$@"; do
        ((SECONDS < end)) || return 1
        sleep 0.02
    done
}
