# shellcheck shell=bash
# What the scripts share. Sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

wrong_use() { # TEXT
    echo "$0: $1 (--help says more)" >&2
    exit 2
}

# help TEXT "$@": prints the script's line of help when it is asked for; refuses options that it does not name.
help() {
    local text=$1 argument
    shift
    case "${1-}" in -h | --help)
        echo "usage: $0$text"
        exit 0
        ;;
    esac
    [[ $text != :* || $# -eq 0 ]] || wrong_use "takes no arguments, $1 neither"
    for argument in "$@"; do
        [[ $argument != -* || $text == *OPTION* || " ${text//[=|\[\]]/ } " == *" ${argument%%=*} "* ]] ||
            wrong_use "unknown option $argument"
    done
}

# step TEXT COMMAND...: says what is done, and shows the command's output only when it fails.
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
