# shellcheck shell=bash
# Shared functions of the scripts. Source this file, do not run it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

usage_error() { # TEXT
    echo "$0: $1 (see --help)" >&2
    exit 2
}

# help TEXT "$@": prints TEXT and exits on --help; rejects options that TEXT does not contain.
help() {
    local text=$1 argument
    shift
    case "${1-}" in -h | --help)
        echo "usage: $0$text"
        exit 0
        ;;
    esac
    [[ $text != :* || $# -eq 0 ]] || usage_error "unexpected argument $1"
    for argument in "$@"; do
        [[ $argument != -* || $text == *OPTION* || " ${text//[=|\[\]]/ } " == *" ${argument%%=*} "* ]] ||
            usage_error "unknown option $argument"
    done
}

# step TEXT COMMAND...: prints TEXT and runs COMMAND; shows its output only on failure.
step() {
    local text=$1 log
    shift
    log=$(mktemp)
    printf '%s ... ' "$text"
    local start=$SECONDS
    if "$@" >"$log" 2>&1 </dev/null; then
        printf 'done (%d s)\n' $((SECONDS - start))
        rm -f "$log"
    else
        local status=$?
        printf 'FAILED\n'
        cat "$log"
        rm -f "$log"
        exit "$status"
    fi
}
