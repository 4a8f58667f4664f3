# fish completion for kobctl, which says itself what may stand where.
function __kobctl_lines
    set -l words (commandline -opc)
    set -e words[1]
    kobctl complete -- $words (commandline -ct | string trim --left --chars "'\"") 2>/dev/null
end
complete -c kobctl -f -a '(__kobctl_lines | string match -v :files)'
complete -c kobctl -n '__kobctl_lines | string match -q :files' -F
