# fish completion for kobctl, which says itself what may stand where.
function __kobctl_complete
    set -l words (commandline -opc)
    set -e words[1]
    set -l word (commandline -ct)
    for line in (kobctl complete -- $words "$word" 2>/dev/null)
        if test "$line" = :files
            __fish_complete_path "$word"
        else
            echo $line
        end
    end
end
complete -c kobctl -f -a '(__kobctl_complete)'
