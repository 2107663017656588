# Installs the packages that this machine lacks. The scripts source this file.
# shellcheck shell=bash

# One need per line: how to detect it, and the package that contains it.
#   command NAME   a program on the PATH
#   header  NAME   a header that the compiler finds
#   file    PATH   a file
#   package NAME   an installed package, if nothing else shows that it is there
readonly kBuildNeeds='
command cmake                 cmake
command ninja                 ninja-build
command g++                   g++
header  sqlite3.h             libsqlite3-dev
header  toml++/toml.h         libtomlplusplus-dev
header  CLI/CLI.hpp           libcli11-dev
header  nlohmann/json.hpp     nlohmann-json3-dev
header  iscsi/iscsi.h         libiscsi-dev
header  blkid/blkid.h         libblkid-dev
'

# To start an emulated jukebox.
readonly kJukeboxNeeds='
file    /usr/sbin/tgtd        tgt
file    /usr/sbin/mkudffs     udftools
'

readonly kDevelopmentNeeds='
header  gtest/gtest.h         libgtest-dev
header  gmock/gmock.h         libgmock-dev
command clang++               clang
command clang-format          clang-format
command clang-tidy            clang-tidy
command ccache                ccache
package libclang-rt-dev       libclang-rt-dev
command python3               python3
command readelf               binutils
command pkg-config            pkgconf
command bash                  bash
command zsh                   zsh
command fish                  fish
command tmux                  tmux
command mandoc                mandoc
command groff                 groff-base
command doxygen               doxygen
command parallel              parallel
command jq                    jq
command ansible-playbook      ansible-core
command bwrap                 bubblewrap
command udevadm               udev
command ssh                   openssh-client
file    /usr/sbin/sshd        openssh-server
file    /usr/sbin/tgtd        tgt
command chromium              chromium
file    /usr/sbin/mkudffs     udftools
file    /usr/sbin/mkfs.ext4   e2fsprogs
command genisoimage           genisoimage
'

# To leave system headers out of what clang-tidy checks.
readonly kTidyNeeds='
package libclang-dev          libclang-dev
package llvm-dev              llvm-dev
'

# The Windows build needs these in addition to kBuildNeeds.
readonly kWindowsBuildNeeds='
command x86_64-w64-mingw32-g++-posix  g++-mingw-w64-x86-64-posix
command dpkg-source                   dpkg-dev
command tclsh                         tcl
'

readonly kWindowsRunNeeds='
file    /usr/lib/wine/wine64          wine64
command wine                          wine
'

readonly kWindowsTestNeeds='
file    /usr/src/googletest/CMakeLists.txt  googletest
'

# To build for 64-bit ARM and to run it.
readonly kArm64Needs='
command aarch64-linux-gnu-g++  g++-aarch64-linux-gnu
command qemu-aarch64           qemu-user
'

say() { printf '%s\n' "$*" >&2; }

# Prints the comment at the top of the script that was called.
usage() { sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"; }

has_header() { printf '#include <%s>\n' "$1" | g++ -std=c++20 -E -x c++ - >/dev/null 2>&1; }

is_there() { # KIND NAME
    case "$1" in
        command) command -v "$2" >/dev/null 2>&1 ;;
        header) has_header "$2" ;;
        file) [ -e "$2" ] ;;
        package) dpkg-query -W -f='${db:Status-Status}' "$2" 2>/dev/null | grep -qx installed ;;
    esac
}

# Prints the missing packages, one per line.
missing_packages() { # NEEDS
    local kind name package
    while read -r kind name package; do
        [ -n "$kind" ] || continue
        is_there "$kind" "$name" || printf '%s\n' "$package"
    done <<<"$1"
}

# Runs a command as root.
as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo -- "$@"
    fi
}

# Installs what is missing. Prints a message and returns nonzero if that fails.
ensure_needs() { # NEEDS
    local missing
    mapfile -t missing < <(missing_packages "$1")
    [ "${#missing[@]}" -gt 0 ] || return 0

    local byHand="apt-get install ${missing[*]}"
    if ! command -v apt-get >/dev/null 2>&1; then
        say "Missing on this machine: ${missing[*]} (names as on Debian and Ubuntu)."
        say "This system has no apt-get. Install them with its own package manager and run this again."
        return 1
    fi
    if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null 2>&1; then
        say "Missing on this machine: ${missing[*]}."
        say "Installing them needs root or sudo. Ask an administrator to run:"
        say "    $byHand"
        return 1
    fi

    say "Installing: ${missing[*]}"
    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300)
    # Old package lists may be good enough, so only a failing installation is an error.
    as_root "${apt[@]}" update </dev/null >&2 || say "apt-get cannot update the package lists; the old ones are used."
    if ! as_root "${apt[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null >&2; then
        say "apt-get cannot install the packages (see above: no network, no permission, or an unknown package)."
        say "Solve the problem and run this again, or install them by hand:"
        say "    $byHand"
        return 1
    fi
    mapfile -t missing < <(missing_packages "$1")
    if [ "${#missing[@]}" -gt 0 ]; then
        say "Still missing after the installation: ${missing[*]}"
        return 1
    fi
}
