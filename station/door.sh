# shellcheck shell=bash
# The doors of the running televisions: DOORS/NAME/system_bus is the system bus of the television NAME. Sourced by
# station/tv, which says how to fail. The television holds a lock on its folder, so that a folder whose lock is free
# belongs to a dead one.

# The folder of the doors; made, and nobody else's.
doors_folder() {
    local runtime=${XDG_RUNTIME_DIR:-/run/user/$UID}
    local doors=$runtime/velmora-televisions
    [[ -d $runtime && -O $runtime && -w $runtime ]] || doors=/tmp/velmora-televisions-$UID
    mkdir -m 0700 "$doors" 2>/dev/null || true
    [[ -d $doors && ! -L $doors && -O $doors ]] || fail "$doors: not a folder of this user's own"
    echo "$doors"
}

clear_dead_doors() { # DOORS
    local folder lock
    for folder in "$1"/*/; do
        { exec {lock}<"$folder"; } 2>/dev/null || continue # none, or gone since
        if flock --nonblock "$lock"; then
            rm -f "$folder/system_bus"
            rmdir "$folder" 2>/dev/null || true
        fi
        exec {lock}<&-
    done
}

# Opens the door of the given name, else of the first number that is free: its folder is in `door`, and this process and
# its children hold it until the last of them has ended.
open_door() { # NAME or nothing
    local doors turn name=$1 number=1
    doors=$(doors_folder)
    exec {turn}<"$doors"
    flock "$turn" # one television at a time
    clear_dead_doors "$doors"
    [[ -n $name ]] || until name=television-$number && [[ ! -e $doors/$name ]]; do number=$((number + 1)); done
    door=$doors/$name
    mkdir -m 0700 "$door" 2>/dev/null || fail "a television called $name runs already"
    exec {door_lock}<"$door"
    flock "$door_lock"
    exec {turn}<&-
}

close_door() {
    rm -f "$door/system_bus"
    rmdir "$door" 2>/dev/null || true
}
