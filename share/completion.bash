# Completes the commands and options that a program's --help lists, and the names of files and folders elsewhere.
_vupdater_program() {
    local program=$1 word=${COMP_WORDS[COMP_CWORD]} help next
    local command=()
    help=$("$program" --help 2>/dev/null) || return 0
    for next in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ $next != -- ]] || return 0  # the rest are arguments, or another program's command line
        # As soon as a command takes no further command, the rest are its arguments.
        if [[ $next != -* ]] && _vupdater_commands <<<"$help" | grep -qx -- "$next"; then
            command+=("$next")
            help=$("$program" "${command[@]}" --help 2>/dev/null) || return 0
        fi
    done
    if [[ $word == -* ]]; then
        # Lines indented further go on with the text about an option.
        mapfile -t COMPREPLY < <(compgen -W "$(grep -oE '^ {2,4}-[^ ]+' <<<"$help" | tr ',' ' ')" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -W "$(_vupdater_commands <<<"$help")" -- "$word")
    fi
}

_vupdater_commands() {
    sed -nE '/^Subcommands:/,/^$/s/^  ([a-z-]+).*/\1/p'
}

complete -o default -F _vupdater_program vupdater vupdater-agent vupdater-simulated cardsim xsvf
