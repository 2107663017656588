#!/bin/sh
# scripts/run --jukebox asks an emulated jukebox and starts it when needed: run_script_test.sh PROJECT PROGRAM-DIRECTORY
# The scripts are copied; what they build is replaced by the build under test.
set -eu
project=$1 programs=$2
folder=$(mktemp -d)
trap '"$folder/tests/emulated_jukebox/emulated_jukebox" stop "$folder/build/jukebox" || true; rm -rf "$folder"' EXIT
mkdir -p "$folder/scripts" "$folder/tests" "$folder/build/release" "$folder/bin"
cp "$project/scripts/run" "$folder/scripts/run"
cp -r "$project/scripts/lib" "$folder/scripts/lib"
cp -r "$project/tests/emulated_jukebox" "$folder/tests/"
ln -s "$programs" "$folder/build/release/bin"
: >"$folder/build/release/build.ninja"
printf '#!/bin/sh\necho "ninja: no work to do."\n' >"$folder/bin/ninja"
chmod +x "$folder/bin/ninja"
PATH=$folder/bin:$PATH

ask() { "$folder/scripts/run" --jukebox quiet "$@"; }

expect() { # WHAT EXPECTED PRINTED
    [ "$2" = "$3" ] || {
        printf '%s: expected "%s", printed "%s"\n' "$1" "$2" "$3" >&2
        exit 1
    }
}

expect "discs" 7 "$(ask query slots J Tower columns=s notable | grep -c .)"
ask export J Tower S1
expect "discs after the export" 6 "$(ask query slots J Tower columns=s notable | grep -c .)"
"$folder/tests/emulated_jukebox/emulated_jukebox" kill "$folder/build/jukebox"
expect "discs of a jukebox that starts again" 7 "$(ask query slots J Tower columns=s notable | grep -c .)"
