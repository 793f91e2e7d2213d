# shellcheck shell=bash
# The radio stack by hand, inside a television: the command lines the application uses, and looks at the station.

# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

readonly hub=/opt/usr/apps/com.kelsor.tv.brimhub/bin
readonly link=/opt/usr/home/owner/share/com.kelsor.tv.brimhub/ttyZigbeeNCP
readonly host_log=/var/log/station/ncp_host.log

fail() {
    echo "FAILED: $*" >&2
    tail -n 30 /var/log/station/*.log >&2
    exit 1
}

start_stack() { # SPEED
    "$hub/cpcd" "--conf=$hub/cpcd_$1.conf" &
    "$hub/socat" -x -v pty,link=/tmp/ttyZigbeeNCP "pty,link=$link" 2>/dev/null &
    until_true 5 test -e "$link" || fail "no relay link"
    "$hub/zigbeed" -r 'spinel+cpc://cpcd_0?iid=1' -p "$link" -v &
}

is_gone() { # NAME
    ! pgrep -x "$1" >/dev/null
}

stop_stack() {
    local name
    for name in zigbeed socat cpcd; do
        killall "$name"
        until_true 5 is_gone "$name" || fail "$name survives"
    done
    wait
}

count_of() { # TEXT
    grep -cF -- "$1" "$host_log"
}

has_said() { # COUNT TEXT
    (($(count_of "$2") >= $1))
}

wait_for_ready() { # COUNT
    until_true 20 has_said "$1" "ncp_event('ready',)" || fail "the NCP host was not ready $1 times"
}

host() { # METHOD [ARGUMENT]: the reply, or the error
    gdbus call --system -d org.orvane.qm_ncp_host -o /org/orvane/qm_ncp_host \
        -m "org.orvane.qm_ncp_host.service.$1" -- "${@:2}" 2>&1
}

disturb() { # METHOD [ARGUMENT...]
    gdbus call --system -d org.orvane.qm_ncp_host -o /org/velmora/station/ncp_host \
        -m "org.velmora.Station.NcpHost.$1" -- "${@:2}"
}

radio() { # METHOD [ARGUMENT...]
    gdbus call --system -d org.velmora.Station.RadioModule -o /org/velmora/station/radio_module \
        -m "org.velmora.Station.RadioModule.$1" -- "${@:2}"
}

radio_is() { # TEXT...: each stands in the module's state
    local state text
    state=$(radio State)
    for text in "$@"; do [[ $state == *"$text"* ]] || fail "the radio is not $text: $state"; done
}

received() { # the first word of the statistics
    host ember_get_rx_statistics | grep -oE '[0-9]+' | head -n 1
}
