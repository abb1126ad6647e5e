# Shared by the scripts: the packages that a build needs, functions to configure and build a preset. Sourced by bash.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

JOBS=$(nproc 2>/dev/null || echo 2)

# Packages of every build, and those that the tests, the presets with Clang and those for other systems add.
BUILD_PACKAGES=(cmake g++ ninja-build ccache pkg-config libfmt-dev nlohmann-json3-dev libcli11-dev libpcap-dev
    libgnutls28-dev nettle-dev libngtcp2-dev libngtcp2-crypto-gnutls-dev
    libsoci-dev libsqlite3-dev libpq-dev libcrypt-dev libboost-dev)
TEST_PACKAGES=(libgtest-dev libgmock-dev binutils python3 microsocks openssl gnutls-bin iproute2
    clang-format-14 valgrind curl prometheus doxygen tshark chromium nodejs groff-base postgresql haproxy
    nftables)
# ENet is not needed; udp_bench compares with it.
BENCH_PACKAGES=(binutils python3 libenet-dev)
CLANG_PACKAGES=(clang libclang-rt-dev)
TIDY_PACKAGES=(clang-tidy-14)
SYNTAX_PACKAGES=(clang-19 libc++-19-dev libc++abi-19-dev)
WINDOWS_PACKAGES=(g++-mingw-w64-x86-64-posix googletest wine64)
ARMHF_PACKAGES=(g++-arm-linux-gnueabihf qemu-user)
ARM64_PACKAGES=(g++-aarch64-linux-gnu qemu-user)
# Packages of the target architecture that a cross build needs.
SYSROOT_PACKAGES=(libc6-dev libstdc++6 libfmt-dev nlohmann-json3-dev libgnutls28-dev libngtcp2-dev
    libngtcp2-crypto-gnutls-dev libgtest-dev libgmock-dev)

# Targets of the native build, preset dev, that the tests of a build for another system need.
COMPARED_TARGETS=(wirelens arena interop zet_ConsoleLog zet_FileLog zet_Secure)

say()
{
    printf '\n== %s\n' "$*"
}

# Installs the missing packages; contacts no server if all are installed.
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

# Unpacks the packages that a build for another Debian architecture includes, links and loads into
# build/sysroot/ARCHITECTURE. They are not installed: an apt with separate folders fetches them, so that this system's
# packages do not change, whatever the state of the other architecture's packages.
need_sysroot()
{
    local arch=$1 root=$PWD/build/sysroot/$1 own=$PWD/build/sysroot/$1.apt call package link
    [ "$(cat "$root/packages" 2>/dev/null)" != "${SYSROOT_PACKAGES[*]}" ] || return 0
    say "Fetching libraries of $arch"
    rm -rf "$root" "$own"
    mkdir -p "$root" "$own/state/lists/partial" "$own/cache/archives/partial"
    touch "$own/status"
    call=(apt-get -qq -o "APT::Architecture=$arch" -o "APT::Architectures::=$arch" -o "Dir::State=$own/state"
        -o "Dir::State::status=$own/status" -o "Dir::Cache=$own/cache" -o APT::Sandbox::User= -o Debug::NoLocking=1)
    # A list may be out of date on its server. The next call reports what is missing.
    "${call[@]}" update || true
    "${call[@]}" install -y --no-install-recommends --download-only "${SYSROOT_PACKAGES[@]}"
    for package in "$own"/cache/archives/*.deb; do
        dpkg-deb -x "$package" "$root"
    done
    # Links with absolute targets refer to paths below this root.
    find "$root" -type l -lname '/*' | while read -r link; do
        ln -sfnr "$root$(readlink "$link")" "$link"
    done
    rm -rf "$own"
    printf '%s' "${SYSROOT_PACKAGES[*]}" > "$root/packages"
}

# Configures build/PRESET, each time, so that a changed preset takes effect.
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
