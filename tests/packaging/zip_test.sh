#!/usr/bin/env bash
# Unpacks the Windows zip into an empty folder and runs it there, under wine: zip_test.sh FOLDER-OF-PACKAGES
set -u -o pipefail

kProject=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd -P)
readonly kProject

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

zip=$(compgen -G "$1/krvcmd-*-windows-x64.zip") || fail "no zip in $1; scripts/package zip builds it"
folder=$(mktemp -d) || exit 1
trap 'rm -rf -- "$folder"' EXIT
unzip -q "$zip" -d "$folder" || fail "cannot unpack $zip"
program=$(compgen -G "$folder/*/krvcmd.exe") || fail "no krvcmd.exe in the zip's folder"
# All that is in it, and nothing else.
expected='LICENSE
README.txt
THIRD-PARTY-NOTICES.md
completion/krvadm.ps1
completion/krvcmd.ps1
completion/krvsim.ps1
docs/cheat-sheet.md
docs/durations.md
docs/examples/demonstration.toml
docs/examples/krv-sdk-example.c
docs/fleet.md
docs/glossary.md
docs/guide.md
docs/krvsim.md
docs/layout.md
docs/rehearse-a-script.md
docs/remote-protocol.md
docs/remote-servers.md
docs/simulated-service.md
docs/troubleshooting.md
krvSdk64.dll
krvadm.exe
krvcmd.cdx.json
krvcmd.exe
krvsim.exe
sdk/krvSdk64.def
sdk/krv_sdk.h'
difference=$(diff <(printf '%s\n' "$expected") <(cd "${program%/*}" && find . -type f -size +0 | cut -c 3- | LC_ALL=C sort)) ||
    fail "the zip holds other files than it should: $difference"

mkdir -- "$folder/farm" || exit 1
export KRVSIM_HOME=$folder/farm
table=$("$kProject/scripts/lib/wine" "$program" quiet query volumes columns=Il notable sep=, V @33 2>&1 | tr -d '\r')
[ "$table" = "33,Sales 2004" ] || fail "krvcmd.exe prints: $table"
check=$("$kProject/scripts/lib/wine" "${program%/*}/krvsim.exe" check 2>&1 | tr -d '\r' | head -n 1)
[ "$check" = 'The farm of server "." is sound.' ] || fail "krvsim.exe prints: $check"
printf 'the zip runs from its own folder\n'
