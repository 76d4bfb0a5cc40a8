#!/usr/bin/env bash
# Installs what is missing on this machine, and nothing else: tools/setup.sh [VERB]
# Called by each verb of ./dev; quick and silent if nothing is missing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The verb that needs it, the package, the command it brings ("-" for a library), and its purpose.
# A command that exists counts, whoever installed it.
packages() {
    cat <<'TABLE'
build  g++                 g++                The compiler; C++20
build  cmake               cmake              Builds, tests and installs from one description
build  ninja-build         ninja              Runs the build
build  liblo-dev           -                  OSC messages: the network driver and the sender
build  pkg-config          pkg-config         Finds liblo
build  libtinygltf-dev     -                  Reads and writes glTF: the stage's merge and export
build  libtinyobjloader-dev -                 Reads OBJ: the stage's merge
build  nlohmann-json3-dev  -                  JSON, for the glTF library and the stage's files
run    gnuplot-nox         gnuplot            Draws the recorded curves
test   libgtest-dev        -                  GoogleTest: the tests
test   libgmock-dev        -                  Matchers for the tests
test   nodejs              node               Runs the official glTF validator
test   npm                 npm                Installs the glTF validator
test   python3             python3            The tests' small scripts
test   parallel            parallel           Runs many shots, as docs/farm.md has it
bench  libbenchmark-dev    -                  Google Benchmark: times and medians
bench  libtinyxml2-dev     -                  Peer: tag text
bench  libpugixml-dev      -                  Peer: tag text
bench  zlib1g-dev          -                  Peer: the codec
bench  libssl-dev          -                  Peer: OpenSSL's base64
bench  libboost-dev        -                  Peer: Boost.Signals2, beside the message network
bench  python3             python3            Prints the table
fuzz   clang-14            clang++-14         libFuzzer comes with clang
fuzz   libclang-rt-14-dev  -                  libFuzzer and the sanitizers of clang
lint   clang-format-14     clang-format-14    Holds the code's format
lint   binutils            nm                 Reads the export table
lint   git                 git                Lists the tree and the commit messages
lint   python3             python3            Runs the checks
TABLE
}

# Every verb needs "build". The tests also run the stage and draw its curves.
groups_of() {
    case $1 in
        build | run | bench | fuzz | lint) echo "build $1" ;;
        test) echo "build run test" ;;
        all) echo "build run test bench fuzz lint" ;;
        *)
            echo "setup: no verb named \"$1\"" >&2
            return 2
            ;;
    esac
}

is_there() {
    local package=$1 command=$2
    if [[ $command != - ]]; then
        command -v "$command" >/dev/null
    else
        [[ $(dpkg-query -W -f='${Status}' "$package" 2>/dev/null) == "install ok installed" ]]
    fi
}

install_packages() {
    if ! command -v apt-get >/dev/null; then
        echo "setup: this machine has no apt-get. Install the counterparts of these Debian packages" >&2
        echo "yourself, then call again with MIRVANE_NO_SETUP=1:" >&2
        printf '  %s\n' "$@" >&2
        exit 1
    fi
    local as_root=()
    if [[ $(id -u) -ne 0 ]]; then
        if ! command -v sudo >/dev/null; then
            echo "setup: not root, and no sudo. Let an administrator run: apt-get install $*" >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    echo "setup: installing $*"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends "$@"
}

# The validator is pinned by tools/package-lock.json and lives in the build folder.
install_validator() {
    local folder=build/tools/node
    if cmp -s tools/package-lock.json "$folder/package-lock.json" &&
        [[ -d $folder/node_modules/gltf-validator ]]; then
        return
    fi
    echo "setup: installing the glTF validator"
    mkdir -p "$folder"
    cp tools/package.json "$folder/"
    # The lock file is copied last, as the mark that the folder is complete.
    cp tools/package-lock.json "$folder/package-lock.json.part"
    mv "$folder/package-lock.json.part" "$folder/package-lock.json"
    if ! npm ci --prefix "$folder" --no-audit --no-fund --loglevel=error; then
        rm -f "$folder/package-lock.json"
        echo "setup: npm could not install the glTF validator; see above" >&2
        exit 1
    fi
}

[[ -z ${MIRVANE_NO_SETUP:-} ]] || exit 0
groups=$(groups_of "${1:-all}")
missing=()
while read -r group package command _; do
    if [[ " $groups " == *" $group "* ]] && ! is_there "$package" "$command"; then
        missing+=("$package")
    fi
done < <(packages)
if [[ ${#missing[@]} -gt 0 ]]; then
    install_packages "${missing[@]}"
fi
if [[ " $groups " == *" test "* ]]; then
    install_validator
fi
