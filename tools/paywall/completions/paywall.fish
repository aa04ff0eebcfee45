# fish completion for paywall(1). Commands and options are read from the tool's own help.

# Lines of a help text that begin with the pattern, as "name<tab>description".
function __paywall_entries
    awk -v start="^  $argv[1]" '$0 ~ start { print $1 "\t" (length($1) < 28 ? substr($0, 31) : "") }'
end

# Items for the end of a list with commas between.
function __paywall_list
    set -l before (string match -r '^.*,' -- (commandline -ct | string replace -r '^--[a-z]+=' ''))
    printf "$before%s\n" $argv
end

function __paywall_options
    set -l command (commandline -opc)[2]
    paywall $command --help 2>/dev/null | __paywall_entries --
end

complete -c paywall -f
complete -c paywall -n __fish_use_subcommand -a "(paywall --help | sed -n '/^Subcommands:/,\$p' | __paywall_entries '[a-z]')"
complete -c paywall -n 'not __fish_use_subcommand; and string match -q -- "-*" (commandline -ct)' -a '(__paywall_options)'
complete -c paywall -n '__fish_seen_subcommand_from render describe run show' -a '(paywall screens)'
complete -c paywall -n '__fish_seen_subcommand_from store' -a 'list approve decline clear'

complete -c paywall -l device -x -a '(paywall devices)'
complete -c paywall -l language -x -a '(paywall languages)'
complete -c paywall -l appearance -x -a 'light dark'
complete -c paywall -l screens -x -a '(__paywall_list (paywall screens))'
complete -c paywall -l devices -x -a '(__paywall_list (paywall devices))'
complete -c paywall -l languages -x -a '(__paywall_list (paywall languages))'
complete -c paywall -l appearances -x -a '(__paywall_list light dark)'
for option in catalogue script store log out pictures
    complete -c paywall -l $option -r -F
end
for option in products select source premium-id ab-test discount set app-name username seed tags
    complete -c paywall -l $option -x
end
