# shellcheck shell=bash
# Functions for tests that set `television` to a name and then source this file. The logs are in build/logs/NAME.

simulator=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../simulator
# shellcheck source-path=SCRIPTDIR source=../simulator/ui_steps.sh
source "$simulator/ui_steps.sh"
logs=$simulator/../build/logs/$television
log=$logs/application.log

start_television() { # OPTION... -- COMMAND...
    rm -rf "$logs"
    mkdir -p "$logs"
    "$simulator/tv" --name "$television" --screen 1280x720 --logs "$logs" --log-application "$@" &
    process=$!
    trap 'kill "$process" 2>/dev/null || true; wait' EXIT
}

said() { # the application's messages, without details that differ between runs
    grep -aoE '[EWI]/(VELMORA\([0-9]+\): \w+\.cpp: \w+\([0-9]+\) >|PLATFORM\([0-9]+\):) .*' "$log" | sed -E \
        's,\([0-9]+\),,g; s,nRet\[-[0-9]+\],nRet[-N],; s,\[[0-9]+ packets,[N packets,; s,0x[0-9a-f]+,POINTER,; s,:1\.[0-9]+,SENDER,'
}

# Waits for the television to end; expects status 0, and no warning or error from a library.
expect_clean_end() {
    wait "$process" || fail "the application exited with status $?"
    ! grep -aP '(CRI|ERR|WRN)<\d+>(?!.*Canceled by user)|-(ERROR|CRITICAL|WARNING) \*\*' "$log" || fail 'a library logged an error'
}
