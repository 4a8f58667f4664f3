# bash completion for kobctl; names come from the dictionary built into it.
_kobctl() {
    local word=${COMP_WORDS[COMP_CWORD]}
    if [ "$COMP_CWORD" = 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "get set list describe show commit watch event journal nvram config help" -- "$word")
        return
    fi
    case ${COMP_WORDS[1]} in
        get | describe) mapfile -t COMPREPLY < <(kobctl complete-names | sort -u | grep "^$word") ;;
        set)
            mapfile -t COMPREPLY < <(kobctl complete-names | sort -u | grep "^$word" | sed 's/$/=/')
            compopt -o nospace
            ;;
        event)
            [ "$COMP_CWORD" = 2 ] && mapfile -t COMPREPLY < <(compgen -W "ApnChange ApnIPChange NetworkUp NetworkDown \
                PCscfIPChange EthernetUp EthernetDown EthernetIPAdd EthernetIPDel" -- "$word")
            ;;
        journal) mapfile -t COMPREPLY < <(compgen -W "--follow" -- "$word") ;;
        nvram | config) [ "$COMP_CWORD" = 2 ] && mapfile -t COMPREPLY < <(compgen -W "get set" -- "$word") ;;
    esac
}
complete -F _kobctl kobctl
