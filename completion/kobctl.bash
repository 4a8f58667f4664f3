# bash completion for kobctl, which says itself what may stand where.
_kobctl() {
    local line word reply quoted=
    read -ra line <<<"${COMP_LINE:0:COMP_POINT}"
    [[ ${COMP_LINE:0:COMP_POINT} == *[[:blank:]] ]] && line+=("")
    word=${line[-1]#[\"\']} # an opening quote stays where it is
    [[ $word == "${line[-1]}" ]] || quoted=yes
    line[-1]=$word
    COMPREPLY=()
    while IFS=$'\t' read -r reply _; do
        if [[ $reply == :files ]]; then
            compopt -o filenames
            mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$word")
            continue
        fi
        [[ $reply == *= ]] && compopt -o nospace
        # To bash the value behind a "=" is a word of its own, but not in quotes.
        [[ -z $quoted && $word == *=* && $COMP_WORDBREAKS == *=* ]] && reply=${reply#*=}
        COMPREPLY+=("$reply")
    done < <(kobctl complete -- "${line[@]:1}" 2>/dev/null)
}
complete -F _kobctl kobctl
