#!/usr/bin/env bash
# The Windows program prints what this machine's own does, each with a new demonstration farm:
# same_rows_test.sh KRVCMD WINE KRVCMD.EXE. Wine shows the root folder as drive Z.
set -u -o pipefail

folder=$(mktemp -d) || exit 1
trap 'rm -rf -- "$folder"' EXIT
mkdir -- "$folder/linux" "$folder/windows" || exit 1
export LC_ALL=C

compare() { # KRVCMD-ARGUMENT ...
    local status=0
    KRVSIM_HOME="$folder/linux" "$program" "$@" >"$folder/expected" 2>"$folder/expected-error" || status=$?
    KRVSIM_HOME="Z:$folder/windows" "$wine" "$windowsProgram" "$@" >"$folder/raw" 2>"$folder/raw-error"
    local windowsStatus=$?
    # The C runtime's text mode ends lines with both characters; nothing else may differ.
    sed 's/\r$//' "$folder/raw" >"$folder/actual"
    sed 's/\r$//' "$folder/raw-error" >"$folder/actual-error"
    if [ "$windowsStatus" != "$status" ] || ! cmp "$folder/expected" "$folder/actual" ||
        ! cmp "$folder/expected-error" "$folder/actual-error"; then
        printf 'FAILED: krvcmd %s: status %s and %s\n' "$*" "$status" "$windowsStatus"
        diff "$folder/expected" "$folder/actual"
        failed=1
    fi
    [ -s "$folder/expected" ] || { printf 'FAILED: krvcmd %s prints nothing\n' "$*" && failed=1; }
}

program=$1
wine=$2
windowsProgram=$3
failed=0
for object in jukeboxes magazines drives slots volumes; do
    case $object in
        jukeboxes | volumes) address=() ;;
        *) address=(J @29) ;;
    esac
    compare query "$object" "${address[@]}"
    compare query "$object" "${address[@]}" notable
done
[ "$(grep -c . "$folder/expected")" -ge 50 ] || { printf 'FAILED: not all volumes are listed\n' && failed=1; }
exit "$failed"
