# Configures and builds. The scripts source this file after packages.sh and set kRoot.
# shellcheck shell=bash disable=SC2154

readonly kOldestCMake=3.25

# scripts/test installs ccache; the others use it if it is there.
use_compiler_cache() {
    command -v ccache >/dev/null 2>&1 || return 0
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
    export CCACHE_BASEDIR="$kRoot" CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros
}

check_cmake() {
    local have
    have=$(cmake --version | sed -n '1s/[^0-9]*\([0-9.]*\).*/\1/p')
    if [ "$(printf '%s\n%s\n' "$kOldestCMake" "$have" | sort -V | head -n 1)" != "$kOldestCMake" ]; then
        say "CMake $kOldestCMake or newer is necessary (Debian 12 and Ubuntu 24.04 have it); this one is $have."
        return 1
    fi
}

# Configures a preset. Shows CMake's output only when it fails.
configure() { # PRESET [CMAKE ARGUMENT ...]
    local preset=$1 log
    shift
    check_cmake || return 1
    mkdir -p "$kRoot/build" || return 1
    log="$kRoot/build/configure-$preset.log"
    if ! (cd "$kRoot" && cmake --preset "$preset" "$@") </dev/null >"$log" 2>&1; then
        cat "$log" >&2
        say "Configuring the $preset build failed."
        return 1
    fi
}
