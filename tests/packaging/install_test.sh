#!/usr/bin/env bash
# Installs the Debian packages on a machine with nothing but the base system, uses them as an ordinary user, and
# removes them again: install_test.sh FOLDER-OF-PACKAGES
#
# The machine is a folder made by debootstrap (once; it is kept as build/clean-root.tar and unpacked anew
# for each run). Needs root. The packages are installed as README.md says.
set -u -o pipefail

kProject=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd -P)
readonly kProject
cd "$kProject" || exit 1
# shellcheck source=scripts/lib/packages.sh
. scripts/lib/packages.sh
# shellcheck source=scripts/lib/debian.sh
. scripts/lib/debian.sh
readonly kPatience=60 # seconds from the package to the first table

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

passed=0
expect() { # WHAT CONDITION ...
    local what=$1
    shift
    "$@" || fail "$what"
    passed=$((passed + 1))
}

# ---- The machine ---------------------------------------------------------------------------------

# Mounts are private to this process and disappear with it.
if [ "${1-}" != --inside ]; then
    [ $# = 1 ] || fail "usage: install_test.sh FOLDER-OF-PACKAGES"
    [ "$(id -u)" = 0 ] || fail "this test needs root"
    packages=$(cd -- "$1" && pwd -P) || exit 1
    compgen -G "$packages/*.deb" >/dev/null || fail "no packages in $1; scripts/package deb builds them"
    exec unshare --mount --pid --fork -- bash "${BASH_SOURCE[0]}" --inside "$packages"
fi
packages=$2

root=$(mktemp -d) || exit 1
trap 'umount -l "$root/proc" "$root" 2>/dev/null; rmdir "$root"' EXIT
mount -t tmpfs -o mode=755 tmpfs "$root" || fail "this test must be allowed to mount; run it outside of a container, or in a privileged one"

unpack_bare_system "$root" || fail "no bare system to install the packages on"
mount -t proc proc "$root/proc" || fail "cannot mount /proc for the machine"
cp /etc/resolv.conf "$root/etc/resolv.conf"
cp /etc/hosts "$root/etc/hosts"
mkdir "$root/packages"
for name in krvcmd krvcmd-simulator krvcmd-jukebox krvcmd-dev; do
    cp "$packages/${name}"_*.deb "$root/packages/" || fail "the package $name is not there"
done

on_machine() { # COMMAND ...
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}
apt() { on_machine apt-get -qq -o DPkg::Use-Pty=0 "$@" </dev/null >"$root/apt.log" 2>&1 || {
    cat "$root/apt.log" >&2
    fail "apt-get $*"
}; }
packaged() { (cd "$root" && printf '/%s' "packages/$1"_*.deb); } # NAME
as_user() { # SHELL-COMMAND
    on_machine runuser -u tester -- env HOME=/home/tester sh -c "cd && $1"
}
is_installed() { [ "$(on_machine dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }
# All files that a package may install, without those of apt and dpkg.
all_files() {
    (cd "$root" && find . -xdev \( -path ./proc -o -path ./dev -o -path ./run -o -path ./tmp -o -path ./home -o -path ./packages \
        -o -path ./var/lib/apt -o -path ./var/lib/dpkg -o -path ./var/cache -o -path ./var/log \
        -o -path ./apt.log \) -prune -o -print | LC_ALL=C sort)
}

# The words of the line that the document shows, without "apt install".
read -ra shown < <(sed -n 's/^apt install \(\.\/.*\)$/\1/p' "$kProject/README.md")
expect "README.md shows no line that installs" [ "${#shown[@]}" = 2 ]

apt update
on_machine useradd --create-home tester
before=$(all_files)

# ---- Installed -----------------------------------------------------------------------------------

start=$SECONDS
apt install --no-install-recommends "${shown[@]/#.//packages}"
table=$(as_user 'krvcmd query volumes 2>&1') || fail "krvcmd query volumes ends with $?: $table"
taken=$((SECONDS - start))
expect "the first table after $taken seconds, which is too long" [ "$taken" -lt "$kPatience" ]
expect "no banner in: $table" grep -q '^Carvoline - command line interface$' <<<"$table"
expect "no header in: $table" grep -q '^ Vol ID | *Location *| *Status' <<<"$table"
expect "no volume 33 in: $table" grep -Eq '^ +33 \| MyBox\\3\.A +\| active +\| DVD-RAM' <<<"$table"
expect "no success in: $table" [ "$(tail -n 1 <<<"$table")" = "Operation completed successfully." ]
for tool in gcc c++ cmake make python3; do
    expect "$tool came along" [ ! -e "$root/usr/bin/$tool" ]
done
expect "the farm is not private" [ "$(as_user 'stat -c %a .local/state/krvsim')" = 700 ]
expect "a change does not last" [ "$(as_user 'krvcmd quiet name J @31 "New Lab" && krvcmd query jukeboxes J @31 columns=N notable')" = "New Lab" ]
as_user 'krvcmd quiet query jukeboxes J Nowhere' 2>/dev/null
expect "status of a jukebox that there is not: $?" [ $? = 6 ]

on_machine dpkg --remove krvcmd-simulator >/dev/null 2>&1
expect "krvcmd stays without any client library" is_installed krvcmd-simulator
on_machine dpkg --remove --force-depends krvcmd-simulator >/dev/null 2>&1
expect "krvcmd cannot be without the simulator" on_machine dpkg --verify krvcmd
alone=$(as_user 'krvcmd query volumes' 2>&1)
expect "without a library krvcmd ends with $?: $alone" [ $? = 127 ]
expect "without a library krvcmd says: $alone" grep -q 'libkrvSdk64\.so' <<<"$alone"
on_machine sh -c 'dpkg --install /packages/krvcmd-simulator_*.deb' >/dev/null || fail "the simulator cannot be installed after krvcmd"

cp "$root"/usr/lib/*/krvcmd/libkrvSdk64.so "$root/packages/" || fail "no library in a folder of its own"
library_used() { on_machine env "${@}" ldd /usr/bin/krvcmd | sed -n 's/.*libkrvSdk64\.so => \([^ ]*\) .*/\1/p'; }
installed=$(library_used)
expect "the library is $installed" grep -q '^/usr/lib/[^/]*/krvcmd/libkrvSdk64\.so$' <<<"$installed"
for folder in /usr/local/lib /usr/lib "/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)" /opt; do
    mkdir -p "$root$folder"
    cp "$root/$installed" "$root$folder/libkrvSdk64.so"
    on_machine ldconfig
    setting=LD_LIBRARY_PATH=
    [ "$folder" != /opt ] || setting=LD_LIBRARY_PATH=/opt
    used=$(library_used "$setting")
    rm "$root$folder/libkrvSdk64.so"
    expect "a library in $folder is not used, but $used" [ "$(readlink -m "/$used")" = "$folder/libkrvSdk64.so" ]
done
on_machine ldconfig

for file in share/man/man1/krvcmd.1.gz share/bash-completion/completions/krvcmd share/zsh/vendor-completions/_krvcmd \
    share/fish/vendor_completions.d/krvcmd.fish share/doc/krvcmd/copyright share/doc/krvcmd/guide.md \
    share/doc/krvcmd/rehearse-a-script.md share/doc/krvcmd/THIRD-PARTY-NOTICES.md \
    share/doc/krvcmd/krvcmd.cdx.json share/doc/krvcmd-simulator/krvcmd.cdx.json \
    share/doc/krvcmd-simulator/THIRD-PARTY-NOTICES.md share/man/man1/krvsim.1.gz share/man/man5/krvsim-layout.5.gz; do
    # A base system may be told not to unpack documents; none that debootstrap makes is.
    expect "/usr/$file is not there" [ -s "$root/usr/$file" ]
done
for program in krvcmd krvsim; do
    expect "bash cannot read its completion of $program" on_machine bash -n "/usr/share/bash-completion/completions/$program"
done

# Everyday work: media in and out, a format, the service; then the same on a copy of the farm.
answers() { # SHELL-COMMAND ANSWER
    local answer
    answer=$(as_user "$1" 2>&1)
    expect "$1 prints: $answer" [ "$answer" = "$2" ]
}
answers 'krvcmd quiet import J @29 M2 repeat=3' ''
answers 'krvcmd query slots J @29 M2 columns=sl sort=s notable' '1|Invoices 01
2|Invoices 02
3|Sales 2006
4|Price lists
6|Backup March
6|Backup April'
answers 'krvcmd quiet format V @33 label="Sales 2005" && krvcmd query volumes V @33 columns=lz notable' 'Sales 2005|0%'
answers 'krvcmd quiet export V @33 && krvcmd query volumes V @33 columns=o notable' 'offline'
answers 'krvcmd quiet service stop; krvcmd quiet query jukeboxes; echo $?; krvcmd quiet service start' \
    'KRV error 1011: The service on server "." is stopped.
243'
answers 'krvsim check | head -n 1' 'The farm of server "." is sound.'
library=$(grep -o '^\$ LIBRARY=.*' "$kProject/docs/rehearse-a-script.md")
answers "${library#\$ }; krvsim clone --library \"\$LIBRARY\" --from . --to rehearsal >clone.log 2>&1; krvsim check --server rehearsal | head -n 1" \
    'The farm of server "rehearsal" is sound.'
answers 'krvsim journal --server rehearsal --on >/dev/null; krvcmd quiet server=rehearsal export J @29 M2 S1; krvsim journal --server rehearsal --summary' \
    'exported: Sales Tower\2\1 (Invoices 01)
1 change: 1 exported; 6 calls, 0 failed.
about 5 s in jukebox Sales Tower, of which 5 s moving'

# ---- Real jukeboxes ----------------------------------------------------------------------------------

apt install "$(packaged krvcmd-jukebox)"
expect "the module is not beside the client library" [ -s "$root/${installed%/*}/libkrvJukebox64.so" ]
expect "the state folder is not the group's" [ "$(on_machine stat -c '%a %U %G' /var/lib/krvcmd)" = "2771 root krvcmd" ]
expect "no rule for the devices" grep -q 'g:krvcmd:rw' "$root"/lib/udev/rules.d/*krvcmd-jukebox.rules
as_user 'KRVSIM_HOME=/var/lib/krvcmd krvcmd quiet query jukeboxes' >/dev/null 2>&1
expect "somebody outside of the group uses the shared folder" [ $? != 0 ]
for member in tester second; do
    [ "$member" = tester ] || on_machine useradd --create-home "$member"
    on_machine usermod --append --groups krvcmd "$member"
done
answers 'KRVSIM_HOME=/var/lib/krvcmd krvcmd quiet name J @31 "New Lab"' ''
shared=$(on_machine runuser -u second -- env KRVSIM_HOME=/var/lib/krvcmd krvcmd quiet name J @31 "Common Lab" 2>&1)
expect "the second member changes nothing: $shared" [ -z "$shared" ]
answers 'KRVSIM_HOME=/var/lib/krvcmd krvcmd query jukeboxes J @31 columns=N notable' 'Common Lab'
# Its servers are found without the variable, and before those in the users' own folders.
answers 'krvcmd query jukeboxes J @31 columns=N notable' 'Common Lab'
rm -f "$root"/var/lib/krvcmd/*

# ---- Reinstalled and removed -----------------------------------------------------------------------

apt install --reinstall "$(packaged krvcmd)" "$(packaged krvcmd-simulator)" "$(packaged krvcmd-dev)"
expect "the header is not there" [ -s "$root/usr/include/krv_sdk.h" ]
expect "pkg-config would not find the header" [ -s "$root"/usr/lib/*/pkgconfig/krv-sdk.pc ]
expect "the user's farm is gone after installing again" [ "$(as_user 'krvcmd query jukeboxes J @31 columns=N notable')" = "New Lab" ]

apt purge --autoremove krvcmd krvcmd-simulator krvcmd-jukebox krvcmd-dev
rest=$(diff <(printf '%s\n' "$before") <(all_files))
expect "removing leaves a trace: $rest" [ -z "$rest" ]
expect "dpkg remembers a package" [ -z "$(grep '^Package: krv' "$root/var/lib/dpkg/status")" ]
expect "the user's farm must stay" [ -d "$root/home/tester/.local/state/krvsim" ]

# ---- By name, from an archive ----------------------------------------------------------------------

# Another client library: a package that provides libkrvsdk64, with a library in /usr/lib.
other=$root/packages/other
mkdir -p "$other/DEBIAN" "$other/usr/lib"
cp "$root/packages/libkrvSdk64.so" "$other/usr/lib/"
printf '%s\n' 'Package: other-client' 'Version: 1' "Architecture: $(dpkg --print-architecture)" 'Provides: libkrvsdk64' 'Depends: libsqlite3-0' \
    'Maintainer: Nobody <nobody@ostrel.example>' 'Description: Client library for a test' >"$other/DEBIAN/control"
dpkg-deb --root-owner-group --build "$other" "$root/packages/other-client_1.deb" >/dev/null || fail "no package for the test"
(cd "$root/packages" && dpkg-scanpackages . >Packages 2>/dev/null) || fail "no archive for the test"
printf 'deb [trusted=yes] file:/packages ./\n' >"$root/etc/apt/sources.list.d/packages.list"
apt update

apt install krvcmd
expect "krvcmd does not bring the simulator" is_installed krvcmd-simulator
expect "krvcmd brings what it only suggests" [ ! -e "$root/usr/include/krv_sdk.h" ]
apt purge --autoremove krvcmd krvcmd-simulator
apt install krvcmd other-client
expect "the simulator is installed beside another client library" [ ! -e "$root/usr/bin/krvsim" ]
used=$(library_used "LD_LIBRARY_PATH=")
expect "the other client library is not used, but $used" [ "$(readlink -m "/$used")" = /usr/lib/libkrvSdk64.so ]
answers 'krvcmd query jukeboxes J @31 columns=N notable' 'New Lab'

printf '%d checks passed; from the package to the first table in %d s\n' "$passed" "$taken"
