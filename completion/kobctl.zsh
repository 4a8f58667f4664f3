#compdef kobctl
# zsh completion for kobctl, which says itself what may stand where.
local line name entry
local -a names assignments
for line in ${(f)"$(kobctl complete -- "${(@Q)words[2,CURRENT-1]}" "$PREFIX" 2>/dev/null)"}; do
    if [[ $line == :files ]]; then
        _files
        continue
    fi
    name=${line%%$'\t'*}
    entry=${name//:/\\:}
    [[ $line == *$'\t'* ]] && entry+=":${line#*$'\t'}"
    if [[ $name == *= ]]; then assignments+=("$entry"); else names+=("$entry"); fi
done
_describe -t names kobctl names
_describe -t assignments kobctl assignments -S ''
