# shellcheck shell=bash
# The doors of the running televisions: DOORS/NAME/system_bus is the system bus of the television NAME. Sourced by
# station/tv, which says how to fail. The television holds a lock on its folder, so that a folder whose lock is free
# belongs to a dead one.

# The folder of the doors; made, and nobody else's.
doors_folder() {
    local runtime=${XDG_RUNTIME_DIR:-/run/user/$UID}
    local doors=$runtime/velmora-televisions
    [[ -d $runtime && -O $runtime && -w $runtime ]] || doors=/tmp/velmora-televisions-$UID
    mkdir -p -m 0700 "$doors" 2>/dev/null || true
    [[ -d $doors && ! -L $doors && -O $doors ]] || fail "$doors: not a folder of this user's own"
    echo "$doors"
}

# Takes the door NAME: its folder is in `door`, held by the descriptor `door_lock`. Status 1 when a television has it.
take_door() { # DOORS NAME
    door=$1/$2
    mkdir -p -m 0700 "$door" || fail "cannot make the folder $door"
    exec {door_lock}<"$door"
    if ! flock --nonblock "$door_lock"; then
        exec {door_lock}<&-
        return 1
    fi
    rm -f "$door/system_bus" # of a dead one
}

# Takes a door: of the given name, else of the first number that is free.
open_door() { # NAME or nothing
    local doors number=1
    doors=$(doors_folder)
    if [[ -n $1 ]]; then
        take_door "$doors" "$1" || fail "a television called $1 runs already"
        return
    fi
    until take_door "$doors" "television-$number"; do
        number=$((number + 1))
    done
}

close_door() {
    rm -f "$door/system_bus"
    rmdir "$door" 2>/dev/null || true
}
