#!/bin/bash
# A stand-in for the engine that plays the script named by ACTOR_GUION, one
# action a line: "accion dato", or "en K accion dato" for the K-th run alone
# after "cuenta FICHERO". What a text may hold: \n \r \t \\ \xNN. The files that
# a script names are seen from the script's folder.
export LC_ALL=C # bytes, not characters
argumentos=("$@")
vez=0
for ((i = 1; i < $#; ++i)); do
    case ${!i} in
    -o) destino=${*:i+1:1} ;;
    --file) entrada=${*:i+1:1} ;;
    --password-file) clave=${*:i+1:1} ;;
    esac
done

# Without a child: it would outlive this one and hold its pipes open.
espera() {
    [ -n "$nadie" ] || exec {nadie}<> <(:)
    read -rt "$(($1 / 1000)).$(printf %03d $(($1 % 1000)))" -u "$nadie"
}

inunda() {
    printf -v bloque %65536s ''
    for ((queda = $1; queda > 0; queda -= 65536)); do
        printf %s "${bloque:0:queda}"
    done
}

# Whoever sees the mark in the file may start the next run: it is set last.
cuenta() {
    [ -e "$1" ] && vez=$(stat -c %s -- "$1")
    ((++vez))
    printf . >>"$1"
}

# The entry $1 below the folder that was told.
copia() {
    ruta=$destino/$1
    mkdir -p -- "${ruta%/*}"
}

# Its mode, a space, its bytes.
apunta_clave() {
    stat --printf '%a ' -- "$clave" && cat -- "$clave"
}

# How many descriptors the engine was given; from 255 on they are the shell's.
cuenta_descriptores() {
    local abiertos=0
    for ((i = 0; i < 255; ++i)); do
        [ -e "/proc/$$/fd/$i" ] && ((++abiertos))
    done
    printf %d "$abiertos" >"$1"
}

exige() {
    local leida
    IFS= read -rd '' leida <"$clave"
    [ "$leida" = "$1" ] && return
    echo "Error: falta la contraseña, o no es esa" >&2
    exit 1
}

juega() {
    local dato=${1#* }
    case ${1%% *} in
    error) printf %b "$dato" >&2 ;;
    salida) printf %b "$dato" ;;
    espera) espera "$dato" ;;
    aguarda) until [ -e "$dato" ]; do espera 20; done ;;
    inunda) inunda "$dato" >&2 ;;
    inunda-salida) inunda "$dato" ;;
    cierra) exec >&- 2>&- ;;
    ignora) trap '' TERM ;;
    deja-nieto) sleep "$dato" & ;;
    deja-nieto-hablador) yes & yes >&2 & ;;
    escribe-destino) printf "%${dato}s" '' >"$destino" ;;
    crea-entrada) copia "$entrada" && printf %s "$dato" >"$ruta" ;;
    crea) printf -v dato %b "$dato" && copia "$dato" && printf x >"$ruta" ;;
    enlaza-entrada) copia "$entrada" && ln -s -- "$dato" "$ruta" ;;
    cuenta) cuenta "$dato" ;;
    en) [ "${dato%% *}" != "$vez" ] || juega "${dato#* }" ;;
    exige) exige "$dato" ;;
    argumentos) printf '%s\0' "${argumentos[@]}" >>"$dato" ;;
    clave) [ -z "$clave" ] || apunta_clave >"$dato" ;;
    descriptores) cuenta_descriptores "$dato" ;;
    senal) kill -"$dato" $$ ;;
    sale) exit "$dato" ;;
    esac
}

mapfile -t lineas <"$ACTOR_GUION"
cd "${ACTOR_GUION%/*}" || exit
for linea in "${lineas[@]}"; do
    juega "$linea"
done
exit 0
