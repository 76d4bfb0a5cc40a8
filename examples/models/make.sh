#!/usr/bin/env bash
# Makes the models of this folder from their texts: each is loaded on the stage, with the tools at
# work, and written as the program writes it. What comes out is the same byte for byte each time.
#
#   examples/models/make.sh [FOLDER]    MIRVANE_STAGE names the program, else that of build/release
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
stage=${MIRVANE_STAGE:-$here/../../build/release/bin/mirvane-stage}
folder=${1:-$here}

# Neither the user's presets nor an OSC port of theirs may show in a model.
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export MIRVANE_OSC_CONFIG=$home/none.xml

for model in dolly vehicle handheld; do
    "$stage" model load "$here/$model.xml" --documents "$home" --model "$folder/$model.prm"
done
