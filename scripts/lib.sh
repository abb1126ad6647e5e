# What the scripts share: the packages that a build needs, and configuring and building a preset. Sourced by bash.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

JOBS=$(nproc 2>/dev/null || echo 2)

# What every build needs, and what the tests, the presets with Clang and the one for Windows add.
BUILD_PACKAGES=(cmake g++ ninja-build ccache pkg-config libasio-dev libfmt-dev nlohmann-json3-dev
    libgnutls28-dev libngtcp2-dev libngtcp2-crypto-gnutls-dev)
TEST_PACKAGES=(libgtest-dev libgmock-dev binutils python3 microsocks openssl gnutls-bin iproute2)
CLANG_PACKAGES=(clang libclang-rt-dev)
WINDOWS_PACKAGES=(g++-mingw-w64-x86-64-posix googletest wine64)

say()
{
    printf '\n== %s\n' "$*"
}

# Installs those of the packages that are missing; does nothing, and asks no server, when all are there.
need_packages()
{
    local package missing=()
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    say "Installing ${missing[*]}"
    if [ "$(id -u)" != 0 ]; then
        echo "Not root: run 'apt-get install ${missing[*]}' first." >&2
        return 1
    fi
    export DEBIAN_FRONTEND=noninteractive
    apt-get -q update
    apt-get -q install -y --no-install-recommends "${missing[@]}"
}

# Configures build/PRESET, anew each time, so that a changed preset is taken up.
configure()
{
    local preset=$1 log
    say "Configuring build/$preset"
    log=$(cmake --preset "$preset" 2>&1) || { printf '%s\n' "$log"; return 1; }
    printf '%s\n' "$log" | grep -i 'left out' || true
    printf '%s\n' "$log" | tail -n 1
}

# Builds a preset, or some of its targets.
build()
{
    local preset=$1
    shift
    say "Building build/$preset with $JOBS jobs"
    cmake --build --preset "$preset" -j "$JOBS" ${@:+--target "$@"}
}
