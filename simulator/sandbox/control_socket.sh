# shellcheck shell=bash
# The control sockets of the running televisions: FOLDER/NAME/system_bus is the system bus of the television NAME.
# Sourced by simulator/tv, which says how to fail, and simulator/tvctl. The television holds a lock on its folder, so
# that a folder whose lock is free belongs to a dead one.

find_control_sockets() { # the folder is then in `control_sockets`
    local runtime=${XDG_RUNTIME_DIR:-/run/user/$UID}
    control_sockets=$runtime/velmora-televisions
    [[ -d $runtime && -O $runtime && -w $runtime ]] || control_sockets=/tmp/velmora-televisions-$UID
}

clear_dead_sockets() {
    local folder lock
    for folder in "$control_sockets"/*/; do
        { exec {lock}<"$folder"; } 2>/dev/null || continue # none, or gone since
        if flock --nonblock "$lock"; then
            rm -f "$folder/system_bus"
            rmdir "$folder" 2>/dev/null || true
        fi
        exec {lock}<&-
    done
}

# Makes the folder of the control socket of the given name, else of the first number that is free: it is in
# `control_socket`, and this process and its children hold it until the last of them has ended.
open_control_socket() { # NAME or nothing
    local turn name=$1 number=1
    find_control_sockets
    mkdir -m 0700 "$control_sockets" 2>/dev/null || true
    [[ -d $control_sockets && ! -L $control_sockets && -O $control_sockets ]] ||
        fail "$control_sockets: not a folder of this user's own"
    exec {turn}<"$control_sockets"
    flock "$turn" # one television at a time
    clear_dead_sockets
    [[ -n $name ]] || until name=television-$number && [[ ! -e $control_sockets/$name ]]; do number=$((number + 1)); done
    control_socket=$control_sockets/$name
    mkdir -m 0700 "$control_socket" 2>/dev/null || fail "a television called $name runs already"
    exec {socket_lock}<"$control_socket"
    flock "$socket_lock"
    exec {turn}<&-
}

close_control_socket() {
    rm -f "$control_socket/system_bus"
    rmdir "$control_socket" 2>/dev/null || true
}
