#!/usr/bin/env bash
# What machines see in the sources: layout (clang-format), faults (clang-tidy), Qt's pitfalls (clazy).
# revisa.sh [FILE.cpp…]: those, or all. Says nothing where there is nothing to say.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
source scripts/preparar.sh
asegura "${construir[@]}" clang-format clang-tidy clazy
construye >/dev/null

# non-pod-global-static: texts that a file says several times, made from what
# the compiler laid out; they cost nothing at the start and allocate nothing.
clazy=level0,level1,no-non-pod-global-static

fuentes=("$@")
[ $# -gt 0 ] || mapfile -t fuentes < <(git ls-files '*.cpp')
estado=0
clang-format-14 --dry-run -Werror "${fuentes[@]}" || estado=1
for fuente in "${fuentes[@]}"; do
    clang-tidy-14 --quiet -p build/release "$fuente" 2>/dev/null || estado=1
    case $fuente in
    engine/* | tests/engine/*) ;;
    *) clazy-standalone --checks=$clazy -p build/release "$fuente" || estado=1 ;;
    esac
done
exit $estado
