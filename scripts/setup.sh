# Sourced by run, test and .ci/run: installs what is missing and builds. Says what it does.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '==> %s\n' "$*"; }

packages_in() { grep -hv '^#' "$@" | grep -v '^$'; }

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# install_missing FILE...: the packages that the lists name and the machine lacks.
install_missing() {
    local missing=() package
    for package in $(packages_in "$@"); do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    command -v apt-get >/dev/null || {
        say "These packages are missing and apt-get is not there to install them: ${missing[*]}"
        return 1
    }
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    say "Installing ${#missing[@]} Debian packages: ${missing[*]}"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# build PRESET [target...]: configures when needed, then builds all or the targets named.
build() {
    local preset=$1 tree
    shift
    tree=$root/build
    [ "$preset" = release ] || tree=$root/build-$preset
    if [ ! -f "$tree/build.ninja" ]; then
        say "Configuring ($preset)"
        (cd "$root" && cmake --preset "$preset" >"$root/.configure.log" 2>&1) || {
            cat "$root/.configure.log"
            return 1
        }
        rm -f "$root/.configure.log"
    fi
    say "Building ($preset)"
    if [ $# -eq 0 ]; then
        (cd "$root" && cmake --build --preset "$preset")
    else
        (cd "$root" && cmake --build --preset "$preset" --target "$@")
    fi
}
