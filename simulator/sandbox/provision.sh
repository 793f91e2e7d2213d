# shellcheck shell=bash disable=SC2154 # init, which sources it, sets them
# Fills the television's folders with what is missing there, and injects the faults that are asked for.

readonly hub=com.kelsor.orvane.plovett-hub
readonly hub_programs=/opt/usr/apps/com.kelsor.tv.brimhub/bin
readonly system_programs=/run/simulator/bin
readonly metadata_folder=/opt/usr/home/owner/apps_rw/$hub/data/hub/firmwareInfo
declare -rA images=([factory]=$hub_programs/xqZigbeeRcp-mfg
    [hub]=/opt/usr/apps/$hub/res/hub/config/hub-core/zigbee/xqZigbeeRcp)
readonly factory_image_size=65536

check_version() { # OPTION VERSION
    local byte='(25[0-5]|2[0-4][0-9]|1?[0-9]?[0-9])'
    [[ $2 =~ ^$byte\.$byte\.$byte$ ]] || fail "$1: not three numbers from 0 to 255"
}

put_image() { # PATH BYTES VERSION: the version's three numbers are eight bytes before the end
    local trailer present=$(($2 < 8 ? $2 : 8))
    IFS=. read -ra trailer <<<"$3"
    trailer+=(0 0 0 0 0)
    rm -f "$1"
    truncate -s "$(($2 - present))" "$1"
    ((present == 0)) || printf '%b' "$(printf '\\0%03o' "${trailer[@]: -present}")" >>"$1"
}

choose_image() { # KIND=missing|SIZE[:VERSION]
    local kind=${1%%=*} what=${1#*=} version=$firmware
    [[ -n ${images[$kind]:-} ]] || fail "--image $1: neither factory nor hub"
    [[ $what != missing ]] || { rm -f "${images[$kind]}" && return; }
    [[ $what != *:* ]] || version=${what#*:}
    check_version "--image $1" "$version"
    [[ ${what%%:*} =~ ^[0-9]{1,10}$ ]] || fail "--image $1: not a number of bytes"
    put_image "${images[$kind]}" "$((10#${what%%:*}))" "$version"
}

inject_program_fault() { # NAME=BEHAVIOUR
    local name=${1%%=*} path=$hub_programs/${1%%=*} real=/run/simulator/real old=/run/simulator/old
    [[ $name != chsmack ]] || path=$system_programs/$name
    case $1 in
        chsmack=old | chsmack=ignores-sigterm) fail "--program $1: chsmack does not stay" ;;
        cpcd=* | socat=* | zigbeed=* | chsmack=*) ;;
        *) fail "--program $1: not cpcd, socat, zigbeed or chsmack" ;;
    esac
    case ${1#*=} in
        missing) rm -f "$path" ;;
        ends) cp --remove-destination /usr/bin/true "$path" ;;
        ignores-sigterm) # blocked, so that a program's own handler does not run either
            mkdir -p "$real"
            mv "$path" "$real/$name"
            # shellcheck disable=SC2016 # the script expands its own arguments
            printf '#!/bin/sh\nexec env --block-signal=TERM %s "$@"\n' "$real/$name" >"$path"
            chmod +x "$path"
            ;;
        old)
            mkdir -p "$old"
            cp /usr/bin/sleep "$old/$name"
            env --ignore-signal=TERM "$old/$name" infinity </dev/null >/dev/null 2>&1 &
            ;;
        *) fail "--program $1: not missing, ends, ignores-sigterm or old" ;;
    esac
}

inject_folder_fault() { # PATH=missing|full; tv makes it read-only
    case ${1##*=} in
        missing) rm -rf "${1%=*}" ;;
        full) cat /dev/zero >"${1%=*}/filler" 2>/dev/null || true ;;
    esac
}

provision() {
    local speed configuration fault
    check_version "--firmware $firmware" "$firmware"
    mkdir -p /run/cpcd /run/simulator/relay "$hub_programs" "$system_programs" "$metadata_folder" \
        /opt/usr/home/owner/share/com.kelsor.tv.brimhub "${images[hub]%/*}" /opt/data/BM/EW/result \
        /opt/share/securestorage/data /mnt/drm/securestorage/data
    cp --remove-destination "$folder/../fakes/cpcd" "$folder/../fakes/zigbeed" /usr/bin/socat "$hub_programs"
    cp "$folder/../fakes/chsmack" "$system_programs"
    ln -s /usr/bin/socat /run/simulator/relay/cpcd # under their own names, so that killing socat does not end them
    ln -s /usr/bin/socat /run/simulator/relay/zigbeed
    for speed in 115200 921600; do
        configuration=$hub_programs/cpcd_$speed.conf
        [[ -e $configuration ]] || printf 'serial_device: /dev/ttyIOT\nserial_speed: %s\n' "$speed" >"$configuration"
    done
    [[ -e ${images[factory]} ]] || put_image "${images[factory]}" "$factory_image_size" "$firmware"
    [[ -z $metadata ]] || : >"$metadata_folder/radioFirmwareMetadata.json"
    for fault in "${image_choices[@]}"; do choose_image "$fault"; done
    for fault in "${program_faults[@]}"; do inject_program_fault "$fault"; done
    for fault in "${folder_faults[@]}"; do inject_folder_fault "$fault"; done
}
