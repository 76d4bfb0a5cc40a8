#!/usr/bin/env bash
# Simulates one saved scene again: one job of a farm, under any scheduler.
#
#   examples/farm/shot.sh SCENE FOLDER [OPTIONS]
#
# Writes the glTF file and the table of curves below FOLDER, under the scene's path. OPTIONS go to
# `mirvane-stage resimulate`, such as --set "*.multiplier=2". MIRVANE_STAGE names the program, else
# it is the one in the PATH. The exit code is the program's: docs/farm.md tells which to try again.
set -euo pipefail
if [[ $# -lt 2 ]]; then
    echo "usage: shot.sh SCENE FOLDER [OPTIONS]" >&2
    exit 1
fi
scene=$1
folder=$2
shift 2

# Two scenes of one name in two folders have two results.
name=$(realpath -m --relative-to=. -- "$scene")
[[ $name != ../* ]] || name=$(realpath -m -- "$scene")
result=$folder/${name%.scene}
mkdir -p "$(dirname "$result")"

# Jobs share nothing: each has settings and a log of its own, and no port.
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export MIRVANE_OSC_CONFIG=$home/none.xml

code=0
"${MIRVANE_STAGE:-mirvane-stage}" resimulate "$scene" --documents "$home" \
    --out "$result.gltf" --out-curves "$result.csv" "$@" || code=$?
if [[ $code -ne 0 ]]; then
    echo "shot.sh: $scene: exit code $code" >&2
    # The log of a shot that failed is beside its results.
    find "$home" -name core.log -exec cp {} "$result.log" \;
fi
exit "$code"
