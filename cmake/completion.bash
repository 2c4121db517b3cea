# Completion for kv. What it offers comes from the program's own help.

_kv_words() { # the first words of the lines behind "Subcommands:" or "Actions:"; or the only action, named by the usage
    "$@" --help 2>/dev/null | sed -n -e '/^\(Subcommands\|Actions\):$/,/^$/s/^  \([a-z][a-z]*\) .*/\1/p' \
        -e 's/^Usage: kv [a-z]* \([a-z][a-z]*\) .*/\1/p'
}

_kv_options() { # the first words of the lines behind "Options:"
    "$@" --help 2>/dev/null | sed -n '/^Options:$/,/^$/s/^  \(-[-a-z]*\).*/\1/p'
}

_kv() {
    local word=${COMP_WORDS[COMP_CWORD]} command=("$1") next choices=
    for next in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ ${#command[@]} -lt 3 && " $(_kv_words "${command[@]}" | tr '\n' ' ') " == *" $next "* ]] || break
        command+=("$next")
    done
    if [[ $word == -* ]]; then
        choices=$(_kv_options "${command[@]}")
    elif [[ ${#command[@]} -eq COMP_CWORD ]]; then
        choices=$(_kv_words "${command[@]}")
    fi
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
}

complete -o default -F _kv kv
