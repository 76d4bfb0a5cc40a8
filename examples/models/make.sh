#!/usr/bin/env bash
# Makes the models of this folder from their texts: loads each on the stage, with the tools at work,
# and writes it. The results are the same byte for byte each time.
#
#   examples/models/make.sh [FOLDER]    MIRVANE_STAGE names the program, else that of build/release
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
stage=${MIRVANE_STAGE:-$here/../../build/release/bin/mirvane-stage}
folder=${1:-$here}

# Neither the user's presets nor the user's OSC port may affect a model.
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export MIRVANE_OSC_CONFIG=$home/none.xml

for model in dolly vehicle handheld; do
    "$stage" model load "$here/$model.xml" --documents "$home" --model "$folder/$model.prm"
done
