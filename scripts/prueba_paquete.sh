#!/usr/bin/env bash
# Builds the package, installs it on a bare Debian 12 (a folder made with
# debootstrap), uses it there and removes it; fails if anything of it is missing
# or stays. As root. With a folder as argument, a picture of the window goes there.
set -euo pipefail
# Mounts and processes of its own, so that none outlives it however it ends.
[ -n "${ORCALIN_APARTE:-}" ] ||
    ORCALIN_APARTE=1 exec unshare --mount --pid --fork --kill-child --mount-proc "$0" "$@"

aqui=$(dirname "$(dirname "$(readlink -f "$0")")")
source "$aqui/scripts/preparar.sh"
fotos=${1:+$(realpath "$1")}
espejo=http://deb.debian.org/debian

asegura "${construir[@]}" debootstrap file xvfb xdotool imagemagick
cd "$aqui"
construye
rm -f build/release/orcalin_*.deb
cmake --build --preset release --target package >/dev/null
paquete=$(echo build/release/orcalin_*.deb)

base=build/debian12.tar
if [ ! -f "$base" ]; then
    debootstrap --variant=minbase --make-tarball="$base.tgz" bookworm "$PWD/build/db" "$espejo"
    debootstrap --variant=minbase --unpack-tarball="$PWD/$base.tgz" bookworm build/db "$espejo"
    tar -C build/db -cf "$base.nuevo" .
    rm -rf build/db "$base.tgz"
    mv "$base.nuevo" "$base"
fi

debian=$(mktemp -d)
limpia() {
    umount -ql "$debian/proc" "$debian/dev" || true
    rm -rf --one-file-system "$debian"
}
trap limpia EXIT
tar -C "$debian" -xf "$base"
mount -t proc proc "$debian/proc"
mount -t tmpfs -o mode=755 tmpfs "$debian/dev"
for nodo in null zero random urandom; do cp -a "/dev/$nodo" "$debian/dev/"; done

aparte=()
dentro() {
    "${aparte[@]}" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 TMPDIR=/tmp \
        DEBIAN_FRONTEND=noninteractive ${DISPLAY_DENTRO:+DISPLAY=$DISPLAY_DENTRO} \
        chroot "$debian" "$@"
}
apt() { dentro apt-get -qq -y --no-install-recommends -o Dpkg::Use-Pty=0 "$@" >/dev/null; }
# What packages write about themselves and all caches are not the package's.
lista() {
    (cd "$debian" && find . -xdev \( -path ./var/lib/dpkg -o -path ./var/lib/apt -o -path ./var/log \
        -o -path ./var/cache -o -path ./root -o -path ./tmp -o -path ./dev -o -path ./proc \) \
        -prune -o -print | sort)
}
debe() {
    if "$@"; then echo "  bien: $*"; else echo "  MAL: $*" >&2; exit 1; fi
}
da() {
    local esperado=$1 dado
    shift
    dado=$(dentro "$@")
    [ "$dado" = "$esperado" ] || { echo "  MAL: $* dice «$dado», no «$esperado»" >&2; exit 1; }
    echo "  bien: $* dice «$dado»"
}

echo "Las dependencias en un Debian 12 pelado"
apt update
# With those that make caches out of what it brings, and a session bus.
apt satisfy "$(dpkg-deb -f "$paquete" Depends)"
apt install shared-mime-info desktop-file-utils gtk-update-icon-cache hicolor-icon-theme \
    libglib2.0-bin dbus-daemon at-spi2-core libarchive-tools zstd
lista >"$debian/tmp/antes"

echo "Instalar"
cp "$paquete" "$debian/tmp/orcalin.deb"
nuevos=$(dentro apt-get -s install /tmp/orcalin.deb | grep -c '^Inst') || true
debe [ "$nuevos" = 1 ]
apt install /tmp/orcalin.deb

echo "Usar"
da es.orcalin.Orcalin.desktop xdg-mime query default application/x-okz
debe test -f "$debian/usr/share/dbus-1/services/es.orcalin.Orcalin.service"
dentro sh -c 'mkdir -p "/root/cosas ñ" && cd "/root/cosas ñ" && echo hola >a.txt &&
    /usr/libexec/orcalin/orcalin compress a.txt -o ../cosas.okz 2>/dev/null'
da hola bsdtar -xOf /root/cosas.okz a.txt
da "  standard::content-type: application/x-okz" \
    sh -c 'gio info -a standard::content-type /root/cosas.okz | grep content-type'

exec {leer}<> <(:)
Xvfb -displayfd "$leer" -screen 0 900x700x24 -nolisten tcp 2>/dev/null &
read -r -t 20 -u "$leer" numero
export DISPLAY=:$numero DISPLAY_DENTRO=:$numero
ventana() { timeout 30 xdotool search --sync --onlyvisible --name "$1" >/dev/null; }
# The bus starts the application by what the package installed for it, as from
# a menu entry and from the file type's application.
arranca() {
    local foto=$1 sesion
    shift
    # The application goes with its session, the next must not find its window.
    local aparte=(unshare --pid --fork --kill-child)
    # shellcheck disable=SC2016
    dentro dbus-run-session -- sh -c '
        "$@"
        while [ ! -e /tmp/basta ]; do sleep 0.1; done
        rm -f /tmp/basta' sh "$@" >"$debian/tmp/dicho" 2>&1 &
    sesion=$!
    debe ventana orcalin
    sleep 1
    [ -z "$fotos" ] || import -window root "$fotos/paquete-$foto.png"
    touch "$debian/tmp/basta"
    wait "$sesion" || { cat "$debian/tmp/dicho" >&2; exit 1; }
    while xdotool search --onlyvisible --name orcalin >/dev/null 2>&1; do sleep 0.1; done
}
arranca comprimir orcalin-app --servicio comprimir "/root/cosas ñ"
arranca abrir gio open /root/cosas.okz

echo "Quitar"
apt purge orcalin
lista >"$debian/tmp/despues"
debe diff "$debian/tmp/antes" "$debian/tmp/despues"
echo "El paquete se instala, funciona y se quita sin dejar rastro."
