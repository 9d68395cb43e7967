# Completion of klipra-cli for bash, loaded by the bash-completion package when it is first needed.

# What can be cut, in any letter case.
_klipra_cli_audio='@([mM][pP]3|[wW][aA][vV])'

# Sets `operands`, the words behind the command before the one being completed that are no options
# and no values of options.
_klipra_cli_operands() {
    operands=()
    local i
    for ((i = 2; i < cword; ++i)); do
        case ${words[i]} in
        --level | --time | --width | --zoom) ((++i)) ;;
        -?*) ;;
        *) operands+=("${words[i]}") ;;
        esac
    done
}

# Completes the operand that comes after `operands`: the source, then what is written. A time is
# anybody's guess.
_klipra_cli_operand() {
    case $1:${#operands[@]} in
    info:0 | extract:0 | cut:0 | split:0 | scenes:0 | wave:0) _filedir "$_klipra_cli_audio" ;;
    extract:3 | cut:3) _filedir "$_klipra_cli_audio" ;;
    split:0 | split:1) ;;
    split:*) _filedir "$_klipra_cli_audio" ;;
    wave:1) _filedir '[pP][nN][gG]' ;;
    esac
}

_klipra_cli() {
    local cur prev words cword
    # A colon is part of a time, an equals sign of an option: neither begins a word.
    _init_completion -n := || return

    if ((cword == 1)); then
        mapfile -t COMPREPLY < <(compgen -W \
            'info extract cut split scenes wave --help --version' -- "$cur")
        return
    fi
    case $prev in
    --level | --time | --width | --zoom) return ;;
    esac

    local -A options=([info]='--json' [scenes]='--level --time --json' [wave]='--width --zoom')
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "${options[${words[1]}]-}" -- "$cur")
        return
    fi

    local operands
    _klipra_cli_operands
    _klipra_cli_operand "${words[1]}"

    # Bash replaces only what stands behind the last sign that separates words for it.
    if [[ $cur == *[:=]* && $cur != [\'\"]* ]]; then
        local begun=${cur%"${cur##*[:=]}"}
        COMPREPLY=("${COMPREPLY[@]#"$begun"}")
    fi
} && complete -F _klipra_cli klipra-cli
