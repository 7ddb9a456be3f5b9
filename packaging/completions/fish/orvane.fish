# Completion of orvane(1) for fish.

function __orvane_presets
    orvane list 2>/dev/null | string replace --regex '^ *[0-9]+  ' ''
end

set -l commands list show create import export add check menu notify recover

complete -c orvane -f
complete -c orvane -l help -d 'Show help'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -l version -d 'Show the version'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a list -d 'Show the presets'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a show -d 'Show one preset'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a create -d 'Make the folder of a preset'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a import -d 'Make a preset from a folder'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a export -d 'Write a preset to a file'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a add -d 'Add the preset in a file'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a check -d 'Look for mistakes in presets'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a menu -d 'Pop up the menu of the helper'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a notify -d 'Tell the running helper of changes'
complete -c orvane -n "not __fish_seen_subcommand_from $commands" -a recover -d 'What killed creations left'

complete -c orvane -n '__fish_seen_subcommand_from list show create check' -l json -d 'Print JSON'
complete -c orvane -n '__fish_seen_subcommand_from show create export check' -a '(__orvane_presets)' -d Preset
complete -c orvane -n '__fish_seen_subcommand_from create menu' -l in -r -a '(__fish_complete_directories)' -d 'Parent folder'
complete -c orvane -n '__fish_seen_subcommand_from create' -l set -x -d 'NAME=VALUE of a variable'
complete -c orvane -n '__fish_seen_subcommand_from create' -l no-input -d 'Take defaults without asking'
complete -c orvane -n '__fish_seen_subcommand_from create' -l no-open -d 'Do not open the new folder'
complete -c orvane -n '__fish_seen_subcommand_from create' -l dry-run -d 'Show what would be made'
complete -c orvane -n '__fish_seen_subcommand_from import' -l label -x -d 'Label of the preset'
complete -c orvane -n '__fish_seen_subcommand_from import' -l variable -x -d 'TEXT=NAME'
complete -c orvane -n '__fish_seen_subcommand_from import' -l with-content -d 'Copy the contents of files'
complete -c orvane -n '__fish_seen_subcommand_from import' -a '(__fish_complete_directories)'
complete -c orvane -n '__fish_seen_subcommand_from recover' -l remove -d 'Remove what was made'
complete -c orvane -n '__fish_seen_subcommand_from recover' -l keep -d 'Keep everything'
complete -c orvane -n '__fish_seen_subcommand_from export' -l force -d 'Replace an existing file'
complete -c orvane -n '__fish_seen_subcommand_from export add check' -F
