#!/usr/bin/env bash
# Builds the fuzzer with clang and lets it run: corre.sh SECONDS [CORPUS [WHAT…]].
# WHAT is archivo, indice, entradas or cifrado (formas.h), each for that long; by
# default it is all of them.
# What it finds is left in CORPUS (by default none is kept), a crash as crash-*.
# Never as root: what it looks for is a way to write anywhere.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"
segundos=$1
aparte=$(mktemp -d)
escritos=$(mktemp -d -p /dev/shm) # in memory: what is taken out is flushed to disk
trap 'chmod -R u+rwx "$aparte" "$escritos" && rm -rf "$aparte" "$escritos"' EXIT
corpus=${2:-$aparte/corpus}
mkdir -p "$corpus"
corpus=$(readlink -f "$corpus")
[ $# -gt 2 ] && cosas=("${@:3}") || cosas=(archivo indice entradas cifrado)

cmake -S ../../.. --preset fuzz >/dev/null
cmake --build ../../../build/fuzz --target fuzz_lector >/dev/null
for que in "${cosas[@]}"; do mkdir -p "$corpus/$que"; done
[ ! -d "$corpus/archivo" ] || python3 semillas.py "$corpus/archivo"

cp ../../../build/fuzz/bin/fuzz_lector "$aparte"
como=()
if [ "$(id -u)" -eq 0 ]; then
    como=(setpriv --reuid 65534 --regid 65534 --clear-groups)
    chown -R 65534:65534 "$aparte" "$escritos" "$corpus"
fi
# Its own output apart, nothing on the terminal: the engine talks a lot.
for que in "${cosas[@]}"; do
    echo "$que:"
    "${como[@]}" env TMPDIR="$escritos" ORCALIN_FUZZ="$que" \
        ASAN_OPTIONS=malloc_context_size=4:quarantine_size_mb=16 nice "$aparte/fuzz_lector" \
        -max_total_time="$segundos" -max_len=16384 -timeout=20 -rss_limit_mb=2048 -close_fd_mask=3 \
        -artifact_prefix="$corpus/" "$corpus/$que"
done
