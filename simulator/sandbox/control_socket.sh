# shellcheck shell=bash
# The control sockets of the running televisions: FOLDER/NAME/system_bus is the system bus of the television NAME.
# Sourced by simulator/tvctl and by simulator/tv, which defines `fail`. A running television holds a lock on its folder,
# so an unlocked folder is stale.

find_control_sockets() { # sets `control_sockets` to the folder
    local runtime=${XDG_RUNTIME_DIR:-/run/user/$UID}
    control_sockets=$runtime/velmora-televisions
    [[ -d $runtime && -O $runtime && -w $runtime ]] || control_sockets=/tmp/velmora-televisions-$UID
}

remove_stale_sockets() {
    local folder lock
    for folder in "$control_sockets"/*/; do
        { exec {lock}<"$folder"; } 2>/dev/null || continue # no folder exists, or another process has just removed it
        if flock --nonblock "$lock"; then
            rm -f "$folder/system_bus"
            rmdir "$folder" 2>/dev/null || true
        fi
        exec {lock}<&-
    done
}

# Creates the folder of the television's control socket and sets `control_socket` to it. Without a NAME, takes the first
# free television-N. The folder stays locked until this process and all its children have exited.
open_control_socket() { # [NAME]
    local folder_lock name=$1 number=1
    find_control_sockets
    mkdir -m 0700 "$control_sockets" 2>/dev/null || true
    [[ -d $control_sockets && ! -L $control_sockets && -O $control_sockets ]] ||
        fail "$control_sockets: not a folder owned by this user"
    exec {folder_lock}<"$control_sockets"
    flock "$folder_lock" # one television at a time
    remove_stale_sockets
    [[ -n $name ]] || until name=television-$number && [[ ! -e $control_sockets/$name ]]; do number=$((number + 1)); done
    control_socket=$control_sockets/$name
    mkdir -m 0700 "$control_socket" 2>/dev/null || fail "a television named $name is already running"
    exec {socket_lock}<"$control_socket"
    flock "$socket_lock"
    exec {folder_lock}<&-
}

close_control_socket() {
    rm -f "$control_socket/system_bus"
    rmdir "$control_socket" 2>/dev/null || true
}
