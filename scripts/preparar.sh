# Sourced by run and test: what the project needs on a Debian 12 machine.
# shellcheck shell=bash

construir=(
    g++ cmake ninja-build pkg-config dpkg-dev
    qt6-base-dev qt6-declarative-dev qt6-svg-dev
    libxcb1-dev libarchive-dev libacl1-dev liblzma-dev libzstd-dev libsodium-dev libcli11-dev
)
mapfile -t usar < <(grep -v '^#' "$(dirname "${BASH_SOURCE[0]}")/usar.txt")
recorrer=(
    xvfb openbox xdotool imagemagick dbus-daemon at-spi2-core
    python3 python3-gi gir1.2-atspi-2.0
)
comprobar=(
    age zstd libarchive-tools man-db libglib2.0-bin dbus-bin x11-utils
    desktop-file-utils appstream shared-mime-info libxml2-utils
    thunar thunarx-python gir1.2-thunarx-3.0 pcmanfm-qt gir1.2-nautilus-4.0
    dunst
    clang libclang-rt-14-dev
)

# Installs what is missing of the packages named, and says so.
asegura() {
    local faltan=() paquete
    for paquete in "$@"; do
        dpkg-query -W -f '${db:Status-Abbrev}' "$paquete" 2>/dev/null | grep -q '^ii' ||
            faltan+=("$paquete")
    done
    [ ${#faltan[@]} -eq 0 ] && return
    if ! command -v apt-get >/dev/null; then
        echo "This is no Debian system. Needed, by their Debian names: ${faltan[*]}" >&2
        exit 1
    fi
    echo "Installing: ${faltan[*]}"
    local raiz=()
    [ "$(id -u)" -eq 0 ] || raiz=(sudo)
    "${raiz[@]}" apt-get update -qq
    "${raiz[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${faltan[@]}" >/dev/null
}

construye() {
    cmake --preset release >/dev/null
    cmake --build --preset release
}
