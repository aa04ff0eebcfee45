# bash completion for paywall(1). Commands and options are read from the tool's own help.

# The words of $1 for the last item of a list with commas between; what stands before it stays.
_paywall_list() {
    local before=
    [[ $current == *,* ]] && before=${current%,*},
    compopt -o nospace
    COMPREPLY=($(compgen -P "$before" -W "$1" -- "${current##*,}"))
}

_paywall() {
    local tool=$1 current=$2 previous=$3 command=${COMP_WORDS[1]} words=
    case $previous in
    --screens) _paywall_list "$("$tool" screens)" && return ;;
    --devices) _paywall_list "$("$tool" devices)" && return ;;
    --languages) _paywall_list "$("$tool" languages)" && return ;;
    --appearances) _paywall_list "light dark" && return ;;
    --device) words=$("$tool" devices) ;;
    --language) words=$("$tool" languages) ;;
    --appearance) words="light dark" ;;
    --catalogue | --script | --store | --log | --out | --pictures) compopt -o default && return ;;
    --products | --select | --source | --premium-id | --ab-test | --discount | --set | --app-name | --username | --seed | --tags)
        return
        ;;
    paywall | */paywall) words=$("$tool" --help | sed -n '/^Subcommands:/,$s/^  \([a-z]*\) .*/\1/p') ;;
    render | describe | run | show) words=$("$tool" screens) ;;
    store) words="list approve decline clear" ;;
    esac
    [[ $current == -* ]] && words=$("$tool" "$command" --help 2>/dev/null | sed -n 's/^  \(-h,\)\?\(--[a-z-]*\).*/\2/p')
    COMPREPLY=($(compgen -W "$words" -- "$current"))
}

complete -F _paywall paywall
