# Root folders of Debian systems, made by debootstrap. The scripts source this file after packages.sh.
# shellcheck shell=bash

# The packages of these commands; packages.sh explains the columns.
readonly kDebianRootNeeds='
command debootstrap     debootstrap
command unshare         util-linux
file    /usr/share/keyrings/debian-archive-keyring.gpg  debian-archive-keyring
'

# The archives of Debian that apt uses on this machine, for another release: lines for sources.list.
debian_sources() { # RELEASE
    # shellcheck disable=SC2016
    apt-get indextargets --format '$(CODENAME) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' 'Origin: Debian' | sort -u |
        while read -r codename component uri; do
            [ "$component" = main ] || continue
            # bookworm-security, bookworm-updates
            case $codename in
                *-*) printf 'deb %s %s-%s main\n' "$uri" "$1" "${codename#*-}" ;;
                *) printf 'deb %s %s main\n' "$uri" "$1" ;;
            esac
        done
}

# Makes a base system of a Debian release in a folder, unless it is there. Needs root.
make_debian_root() { # RELEASE FOLDER
    local release=$1 folder=$2 log="$2.log" sources mirror
    [ ! -x "$folder/usr/bin/apt-get" ] || return 0
    sources=$(debian_sources "$release")
    mirror=$(sed -n "s/^deb \(.*\) $release main\$/\1/p" <<<"$sources" | head -n 1)
    if [ -z "$mirror" ]; then
        say "apt on this machine uses no archive of Debian (or 'apt-get update' has never run), so there is none to take $release from."
        return 1
    fi
    rm -rf -- "$folder.new" && mkdir -p -- "$folder.new" || return 1
    if ! debootstrap --variant=minbase "$release" "$folder.new" "$mirror" </dev/null >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        say "debootstrap could not make a base system of $release."
        return 1
    fi
    printf '%s\n' "$sources" >"$folder.new/etc/apt/sources.list" &&
        mv -- "$folder.new" "$folder"
}

# Unpacks packages of this machine's release for another architecture into a folder, without installing them. Needs no
# root, and does not change what apt knows on this machine.
unpack_foreign_packages() { # ARCHITECTURE FOLDER PACKAGE ...
    local architecture=$1 folder=$2 release apt=$2.apt log=$2.log
    shift 2
    [ ! -e "$folder" ] || return 0
    # shellcheck source=/dev/null
    release=$(. /etc/os-release && printf '%s' "${VERSION_CODENAME-}")
    rm -rf -- "$apt" "$folder.new" && mkdir -p -- "$apt"/{lists,cache}/partial "$apt/packages" "$folder.new" || return 1
    : >"$apt/status"
    debian_sources "$release" >"$apt/sources.list"
    cat >"$apt/apt.conf" <<END
#clear APT::Architectures;
APT::Architecture "$architecture";
APT::Architectures { "$architecture"; };
APT::Sandbox::User "";
Dir::State "$apt";
Dir::State::lists "$apt/lists";
Dir::State::status "$apt/status";
Dir::Cache "$apt/cache";
Dir::Etc::sourcelist "$apt/sources.list";
Dir::Etc::sourceparts "-";
END
    if ! (cd -- "$apt/packages" && export APT_CONFIG="$apt/apt.conf" && apt-get update && apt-get download "$@") </dev/null >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        say "apt-get cannot get packages for $architecture from the archives that this machine uses."
        return 1
    fi
    local package
    for package in "$apt"/packages/*.deb; do
        dpkg-deb --extract "$package" "$folder.new" || return 1
    done
    rm -rf -- "$apt" && mv -- "$folder.new" "$folder"
}

# Unpacks a base system of this machine's own release into a new folder. debootstrap makes it once; it is kept in
# build/clean-root.tar. Needs root.
unpack_bare_system() { # FOLDER
    local image=build/clean-root.tar log=build/debootstrap.log release
    mkdir -p -- "$1" || return 1
    if [ -e "$image" ]; then
        tar -C "$1" -xf "$image" && return
        say "Cannot unpack $image; remove it and try again."
        return 1
    fi
    # shellcheck source=/dev/null
    release=$(. /etc/os-release && printf '%s' "${VERSION_CODENAME-stable}")
    if ! debootstrap --variant=minbase "$release" "$1" </dev/null >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        say "debootstrap could not make a base system of $release."
        return 1
    fi
    tar -C "$1" --one-file-system -cf "$image.new" . && mv -f "$image.new" "$image"
}
