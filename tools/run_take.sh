#!/usr/bin/env bash
# Records a take of a generated hand-held movement, or of the file that MIRVANE_MOTION names, and
# writes it to out/. Arguments go to `mirvane-stage record`, such as --seconds 30 --rate 60.
# Called by `./dev run` after the build.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

bin=${MIRVANE_BUILD:-build/release}/bin
out=out
mkdir -p "$out/documents"

# A port of this run's own, so that it disturbs no listener on the usual one.
port=$((20000 + $$ % 20000))
export MIRVANE_OSC_CONFIG=$PWD/$out/osc.xml
echo "<osc><port>$port</port></osc>" >"$MIRVANE_OSC_CONFIG"

motion=()
[[ -z ${MIRVANE_MOTION:-} ]] || motion=(--file "$MIRVANE_MOTION")
"$bin/mirvane-osc-sender" --quiet --loop --port "$port" "${motion[@]}" &
sender=$!
trap 'kill "$sender" 2>/dev/null || true' EXIT

cat >"$out/bindings.txt" <<'TEXT'
bind Position X = OSC:/camera/position:0
bind Position Y = OSC:/camera/position:1
bind Position Z = OSC:/camera/position:2
bind Rotation X = OSC:/camera/rotation:0
bind Rotation Y = OSC:/camera/rotation:1
bind Rotation Z = OSC:/camera/rotation:2
bind Rotation W = OSC:/camera/rotation:3
set *.deadzone = 0
TEXT

"$bin/mirvane-stage" record --documents "$out/documents" \
    --tool "Tracked Object" --name Camera --bindings "$out/bindings.txt" \
    --latency-bind OSC:/camera/sent:0 \
    --seconds 4 --rate 25 --countdown 1 --undo-redo "$@" \
    --log-input "$out/input.csv" \
    --out "$out/take.gltf" --out-curves "$out/take.csv" --report "$out/report.json" --table \
    --resimulate --out-curves "$out/unchanged.csv" \
    --resimulate --set "*.multiplier=2" --out "$out/twice.gltf" --out-curves "$out/twice.csv"

# Compares each key, except those of the start, with what the device held at that frame, to the last
# digit; the four numbers of a rotation may all have the other sign. A device that has sent no
# rotation yet holds four zeros, which count as W 1. Of a take in which nothing moved this says
# nothing, so it fails.
awk -F, '
    FNR == 1 { next }
    NR == FNR { for (i = 1; i <= 7; ++i) held[$1, i] = $(i + 1); ++frames; next }
    ++row == 1 { next }
    {
        if (!(held[$2, 4] || held[$2, 5] || held[$2, 6] || held[$2, 7]))
            held[$2, 7] = 1
        cosine = 0
        for (i = 4; i <= 7; ++i)
            cosine += held[$2, i] * $(i + 2)
        for (i = 1; i <= 7; ++i) {
            value = (i > 3 && cosine < 0 ? -1 : 1) * held[$2, i]
            good += ($2, i) in held && $(i + 2) != "" && $(i + 2) + 0 == value
            moved += row > 2 && $(i + 2) != before[i]
            before[i] = $(i + 2)
        }
    }
    END {
        printf "%-36s%d of %d, in %d frames\n", "keys equal to the device\047s value", good, 7 * frames, row - 1
        if (good != 7 * frames || row - 1 != frames || !good) {
            print "run_take: a key differs from the input, or is missing" > "/dev/stderr"
            exit 1
        }
        if (!moved) {
            print "run_take: nothing moved: nothing came from the sender, or it stood still" > "/dev/stderr"
            exit 1
        }
    }' "$out/input.csv" "$out/take.csv"

if command -v gnuplot >/dev/null; then
    gnuplot -e "table='$out/take.csv'; picture='$out/take_curves.svg'" tools/plot_curves.gp
fi
echo "written to $out/: take.gltf, take.csv, input.csv, take_curves.svg, unchanged.csv, twice.gltf, twice.csv, report.json"
