#!/usr/bin/env bash
# bench/run.sh [--smoke] [FOLDER]: builds the measurements and runs them all, each beside its peer. With --smoke a hundredth, to see that they run.
# FOLDER is on the disk to be measured; without it a folder under build/bench is. What is to be measured without a disk lies in memory.
set -euo pipefail
root=$(dirname -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")")
script='bench/run.sh'
source "$root/packaging/prepare.sh"

smoke=()
[[ ${1-} != --smoke ]] || { smoke=(--smoke); shift; }
installPackages program bench
buildPreset bench benchmarks

programs=$root/build/bench/bench
disk=$(mktemp -d "${1:-$root/build/bench}/measured.XXXXXX")
memory=$(mktemp -d "$([[ -w /dev/shm ]] && printf /dev/shm || printf '%s' "$disk")/lorvane.XXXXXX")
trap 'rm -rf "$disk" "$memory"' EXIT

measure() {
    local name=$1
    shift
    printf '\n== %s\n' "$name"
    "$programs/$name/bench_$name" "$@" "${smoke[@]}"
}

printf '%s, %s cores, %s, load %s\n' "$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -1)" "$(nproc)" "$(uname -sm)" "$(cut -d' ' -f1-3 /proc/loadavg)"
measure search "$memory"
measure chooser "$memory"
measure text
measure host "$memory"
measure addin "$memory"
measure mailstore "$disk"
measure program "$disk"
