# bash completion for kobctl; names come from the dictionary built into it.
_kobctl() {
    local word=${COMP_WORDS[COMP_CWORD]}
    if [ "$COMP_CWORD" = 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "get set list describe show commit watch help" -- "$word")
        return
    fi
    case ${COMP_WORDS[1]} in
        get | describe) mapfile -t COMPREPLY < <(kobctl complete-names | sort -u | grep "^$word") ;;
        set)
            mapfile -t COMPREPLY < <(kobctl complete-names | sort -u | grep "^$word" | sed 's/$/=/')
            compopt -o nospace
            ;;
    esac
}
complete -F _kobctl kobctl
