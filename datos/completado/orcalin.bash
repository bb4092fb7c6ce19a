# Completion of orcalin for bash. Without the bash-completion library, too.

# Paths that begin with the word typed: folders, and files whose name ends in $1.
_orcalin_rutas() {
    local ruta
    compopt -o filenames 2>/dev/null
    while IFS= read -r ruta; do
        [[ -d $ruta || $ruta == *"$1" ]] && COMPREPLY+=("$ruta")
    done < <(compgen -f -- "${COMP_WORDS[COMP_CWORD]}")
}

_orcalin() {
    local palabra=${COMP_WORDS[COMP_CWORD]} anterior=${COMP_WORDS[COMP_CWORD - 1]}
    local orden=${COMP_WORDS[1]} opciones='--help --password-file'
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W 'compress list extract check --help --version' -- "$palabra")
        return
    fi
    case $anterior in
    --password-file) _orcalin_rutas '' && return ;;
    --level) mapfile -t COMPREPLY < <(compgen -W '1 3 9 19 22' -- "$palabra") && return ;;
    --file) return ;;
    -o)
        [[ $orden == compress ]] && _orcalin_rutas .okz && return
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$palabra")
        return
        ;;
    esac
    case $orden in
    compress) opciones+=' -o --level --max --encrypt --progress --no-verify' ;;
    extract) opciones+=' -o --file --replace --no-remember' ;;
    list | check) opciones+=' --no-remember' ;;
    esac
    if [[ $palabra == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$opciones" -- "$palabra")
    elif [[ $orden == compress ]]; then
        _orcalin_rutas ''
    else
        _orcalin_rutas .okz
    fi
}

complete -F _orcalin orcalin
