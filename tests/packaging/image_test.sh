#!/usr/bin/env bash
# Runs the image for containers: image_test.sh FOLDER-OF-PACKAGES
#
# umoci unpacks it, runc runs it in a container without a network. Needs root.
set -u -o pipefail

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

[ "$(id -u)" = 0 ] || fail "this test needs root"
archive=$(compgen -G "$1/krvcmd-*-oci.tar") || fail "no image in $1; scripts/package oci makes it"
version=${archive##*/krvcmd-}
version=${version%-oci.tar}
folder=$(mktemp -d) || exit 1
name=krvcmd-image-test-$$
trap 'runc delete --force "$name" 2>/dev/null; rm -rf -- "$folder"' EXIT

mkdir "$folder/layout" && tar -C "$folder/layout" -xf "$archive" || fail "cannot unpack $archive"
umoci unpack --image "$folder/layout:$version" "$folder/bundle" >"$folder/log" 2>&1 || fail "cannot unpack the image: $(cat "$folder/log")"

# As its own settings say, but with other arguments and without a terminal.
kOwn=$(cat "$folder/bundle/config.json") || fail "the image has no settings"
readonly kOwn
[ "$(jq -c .process.args <<<"$kOwn")" = '["/usr/bin/krvcmd","help"]' ] || fail "it would run $(jq -c .process.args <<<"$kOwn")"
[ "$(jq .process.user.uid <<<"$kOwn")" = 1000 ] || fail "it would run as user $(jq .process.user.uid <<<"$kOwn")"
run() { # WORD ...
    jq '.process.terminal = false | .process.args = ["/usr/bin/krvcmd", $ARGS.positional[]]' --args "$@" <<<"$kOwn" >"$folder/bundle/config.json"
    runc run --bundle "$folder/bundle" "$name" </dev/null 2>&1
}
table=$(run query volumes) || fail "krvcmd query volumes ends with $?: $table"
grep -q '^Carvoline - command line interface$' <<<"$table" || fail "no banner in: $table"
grep -Eq '^ +33 \| MyBox\\3\.A +\| active +\| DVD-RAM' <<<"$table" || fail "no volume 33 in: $table"
# It goes to standard error, so it may arrive before the table.
grep -qx 'Operation completed successfully\.' <<<"$table" || fail "no success in: $table"
run help | grep -q '^ *Carvoline' || fail "krvcmd help prints nothing"
run quiet query jukeboxes J Nowhere >/dev/null
[ $? = 6 ] || fail "the exit status does not come through"
printf 'the image runs krvcmd\n'
