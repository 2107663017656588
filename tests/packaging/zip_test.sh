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
for file in krvSdk64.dll LICENSE docs/guide.md completion/krvcmd.ps1 sdk/krv_sdk.h sdk/krvSdk64.def; do
    [ -s "${program%/*}/$file" ] || fail "no $file in the zip"
done

export KRVSIM_HOME=$folder/farm
table=$("$kProject/scripts/lib/wine" "$program" quiet query volumes columns=Il notable sep=, V @33 2>&1 | tr -d '\r')
[ "$table" = "33,Sales 2004" ] || fail "krvcmd.exe prints: $table"
printf 'the zip runs from its own folder\n'
