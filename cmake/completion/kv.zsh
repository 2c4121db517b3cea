#compdef kv
# Completion of kv for zsh. What it offers comes from the program: kv complete WORD...

local -a offers candidates meanings
local offer
offers=("${(@f)$(${(Q)words[1]} complete "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2>/dev/null)}")
case ${offers[1]} in
    @files)
        [[ $PREFIX != --*=* ]] || compset -P '*='
        _files
        return
        ;;
    @directories)
        [[ $PREFIX != --*=* ]] || compset -P '*='
        _files -/
        return
        ;;
esac
for offer in $offers; do
    candidates+=("${offer%%$'\t'*}")
    meanings+=("${offer/$'\t'/  -- }")
done
compadd -l -d meanings -a candidates
