# bash completion for kobctl; names come from the dictionary built into it.
_kobctl_complete() { mapfile -t COMPREPLY < <(compgen -W "$1" -- "${COMP_WORDS[COMP_CWORD]}"); }

# The values of `set` and `add`: COLUMN= of the table named last.
_kobctl_columns() {
    local i table=
    for ((i = 3; i < COMP_CWORD; i++)); do
        [[ ${COMP_WORDS[i]} == [A-Za-z]* && ${COMP_WORDS[i + 1]:-} != "=" && ${COMP_WORDS[i - 1]} != "=" ]] &&
            table=${COMP_WORDS[i]}
    done
    _kobctl_complete "$(kobctl complete-names columns "$table" | sed 's/$/=/')"
    compopt -o nospace
}

_kobctl_options() {
    local own=
    case ${COMP_WORDS[1]}:${COMP_WORDS[2]} in
        set:*) own="--silent --confirm" ;;
        table:set) own="--silent" ;;
        table:add) own="--parent" ;;
        confirm:*) own="--resume" ;;
        list:*) own="--case --long" ;;
        get:* | describe:* | table:list) own="--case" ;;
        history:* | search:*) own="--count" ;;
        schema:*) own="--json-schema --openapi --yang" ;;
        watch:*) own="--count --poll" ;;
        monitor:*) own="--count --pcap --secrets" ;;
        sim:set) own="--announce" ;;
        sim:fail) own="--code --times" ;;
        sim:slow) own="--times" ;;
        sim:run) own="--speed" ;;
        journal:*) own="--follow --count" ;;
    esac
    _kobctl_complete "--json --timeout --help $own"
}

_kobctl_table() {
    local word=${COMP_WORDS[COMP_CWORD]}
    case $COMP_CWORD:${COMP_WORDS[2]} in
        2:*) _kobctl_complete "list describe columns max dump get set add del" ;;
        *:describe | *:dump | 3:*) _kobctl_complete "$(kobctl complete-names tables)" ;;
        *:add | *:set)
            # Behind a number or a value another table may follow; a "=" is a word of its own here.
            if [[ $word == "=" || ${COMP_WORDS[COMP_CWORD - 1]} == "=" ]]; then return; fi
            _kobctl_columns
            [ "${COMP_WORDS[2]}" = set ] && [ -n "$word" ] &&
                COMPREPLY+=($(compgen -W "$(kobctl complete-names tables)" -- "$word"))
            ;;
    esac
}

_kobctl_sim() {
    case $COMP_CWORD:${COMP_WORDS[2]} in
        2:*) _kobctl_complete "set row fail slow list clear run" ;;
        *:set)
            _kobctl_complete "$(kobctl complete-names | sed 's/$/=/')"
            compopt -o nospace
            ;;
        3:row) _kobctl_complete "$(kobctl complete-names tables)" ;;
        4:row) _kobctl_complete "add set del" ;;
        3:fail | 3:slow) _kobctl_complete "$(kobctl complete-names; kobctl complete-names tables) commit" ;;
        4:fail) _kobctl_complete "get set add del next" ;;
        3:run) _kobctl_complete "$(kobctl sim run | sed 's/ .*//'; compgen -f -- "${COMP_WORDS[COMP_CWORD]}")" ;;
    esac
}

_kobctl() {
    if [ "$COMP_CWORD" = 1 ]; then
        _kobctl_complete "get set check confirm commit history undo reset table search list describe show export import schema \
            batch watch monitor event journal sim nvram config doctor wait rpcd help"
        return
    fi
    if [[ ${COMP_WORDS[COMP_CWORD]} == -* ]]; then
        _kobctl_options
        return
    fi
    case ${COMP_WORDS[1]} in
        get | reset | history) _kobctl_complete "$(kobctl complete-names)" ;;
        describe) _kobctl_complete "$(kobctl complete-names; kobctl complete-names tables)" ;;
        check | set)
            _kobctl_complete "$(kobctl complete-names | sed 's/$/=/')"
            compopt -o nospace
            [ "${COMP_WORDS[1]}:$COMP_CWORD" = check:2 ] &&
                COMPREPLY+=($(compgen -W "$(kobctl complete-names tables)" -- "${COMP_WORDS[2]}"))
            ;;
        event)
            [ "$COMP_CWORD" = 2 ] && _kobctl_complete "ApnChange ApnIPChange NetworkUp NetworkDown PCscfIPChange \
                EthernetUp EthernetDown EthernetIPAdd EthernetIPDel"
            ;;
        watch | monitor) _kobctl_complete "$(kobctl complete-names; kobctl complete-names tables)" ;;
        export | import | batch) mapfile -t COMPREPLY < <(compgen -f -- "${COMP_WORDS[COMP_CWORD]}") ;;
        help)
            _kobctl_complete "get set check confirm commit history undo reset table search list describe show export import schema \
                batch watch monitor event journal sim nvram config doctor wait rpcd"
            ;;
        nvram | config) [ "$COMP_CWORD" = 2 ] && _kobctl_complete "get set" ;;
        rpcd) [ "$COMP_CWORD" = 2 ] && _kobctl_complete "list call" ;;
        sim) _kobctl_sim ;;
        table) _kobctl_table ;;
    esac
}
complete -F _kobctl kobctl
