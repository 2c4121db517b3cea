# Completion of kv for bash. What it offers comes from the program: kv complete WORD...

_kv() {
    # The words as they were typed: those that bash has broken at @, = or : are joined again.
    local line=${COMP_LINE:0:COMP_POINT} words=() word= quote= started= c i
    for ((i = 0; i < ${#line}; ++i)); do
        c=${line:i:1}
        if [[ -n $quote && $c == "$quote" ]]; then
            quote=
        elif [[ -z $quote && ($c == \' || $c == \") ]]; then
            quote=$c started=1
        elif [[ $c == \\ && $quote != \' ]]; then
            ((++i))
            word+=${line:i:1} started=1
        elif [[ -z $quote && $c == [[:space:]] ]]; then
            [[ -z $started ]] || words+=("$word")
            word= started=
        else
            word+=$c started=1
        fi
    done

    local offers offer
    mapfile -t offers < <("$1" complete "${words[@]:1}" "$word" 2>/dev/null)
    case ${offers[0]-} in
        @files) compopt -o filenames 2>/dev/null; mapfile -t COMPREPLY < <(compgen -f -- "${word#--*=}"); return ;;
        @directories) compopt -o filenames 2>/dev/null; mapfile -t COMPREPLY < <(compgen -d -- "${word#--*=}"); return ;;
    esac
    # Readline replaces what stands behind the last of its breaks only, but from an @ on.
    local breaks=${COMP_WORDBREAKS//[\"\' $'\t\n'><|&;(]/} keep=
    [[ -n $quote || $word != *[$breaks]* ]] || keep=${word%"${word##*[$breaks]}"}
    keep=${keep%@}
    COMPREPLY=()
    for offer in "${offers[@]}"; do
        offer=${offer%%$'\t'*}
        offer=${offer#"$keep"}
        [[ -n $quote ]] || printf -v offer %q "$offer"
        COMPREPLY+=("$offer")
    done
}

complete -F _kv kv
