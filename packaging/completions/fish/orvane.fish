# Completion of orvane(1) for fish.

# The presets, a line each: index, "label" or "index" (which of the two names exactly this preset), and the label, written as
# in JSON (and so without tabs and line ends). Exact is a label that is not empty, no option, no preset's index, no other
# preset's label and, for check, no path of a file.
function __orvane_list
    set -l words (commandline -opc)
    type --quiet -- $words[1]; or set words[1] orvane
    $words[1] list --json 2>/dev/null | env LC_ALL=C awk -v command="$words[2]" '
        function isExact(label, total) {
            if (label == "" || uses[label] > 1 || label ~ /^-/ || label ~ /\\\\u0000|\357\277\275/ ||
                (command == "check" && label ~ /\//)) {
                return 0
            }
            return label !~ /^(0|[1-9][0-9]*)$/ || length(label) > 9 || label + 0 >= total
        }
        {
            total = split($0, record, /[{]"index":/) - 1
            for (i = 1; i <= total; i++) {
                match(record[i + 1], /"label":"([^"\\\\]|\\\\.)*"/)
                label[i] = substr(record[i + 1], RSTART + 9, RLENGTH - 10)
                uses[label[i]]++
            }
            for (i = 1; i <= total; i++) {
                number = record[i + 1]
                sub(/[^0-9].*/, "", number)
                print number "\t" (isExact(label[i], total) ? "label" : "index") "\t" label[i]
            }
        }'
end

# The names that --set can give a value to in the preset, a line each, written as in JSON.
function __orvane_show
    set -l words (commandline -opc)
    type --quiet -- $words[1]; or set words[1] orvane
    $words[1] show --json -- $argv[1] 2>/dev/null | env LC_ALL=C awk '
        {
            begin = index($0, "\"variables\":[")
            rows = substr($0, begin + 13)
            count = begin == 0 ? 0 : split(substr(rows, 1, index(rows, "],\"script\":")), row, /[{]"name":"/)
            for (i = 2; i <= count; i++) {
                match(row[i], /^([^"\\\\]|\\\\.)*"/)
                name = substr(row[i], 1, RLENGTH - 1)
                if (name != "" && name !~ /\\\\u0000|\357\277\275/ && !offered[name]++) {
                    print name
                }
            }
        }'
end

# What a text stands for that JSON writes with no other escapes than those of quotes and backslashes.
function __orvane_unescaped
    string replace --all --regex '\\\\(["\\\\])' '$1' -- $argv[1]
end

# Whether a text has other escapes: control characters, which a candidate cannot have here.
function __orvane_has_controls
    string match --quiet --regex '^([^\\\\]|\\\\["\\\\])*\\\\[^"\\\\]' -- $argv[1]
end

# Labels; a preset whose label does not name it alone is offered by its index, with the label as description.
function __orvane_presets
    __orvane_list | while read --local --delimiter \t number kind label
        if test $kind = label; and not __orvane_has_controls $label
            printf '%s\tPreset\n' (__orvane_unescaped $label)
        else if test -n "$label"
            printf '%s\t%s\n' $number (__orvane_unescaped $label)
        else
            printf '%s\tPreset without label\n' $number
        end
    end
end

# The operands before the cursor; values of options are none.
function __orvane_operands
    set -l words (commandline -opc)
    set -l values
    switch "$words[2]"
        case create
            set values --in --set
        case menu
            set values --in
        case import
            set values --label --variable
    end
    set -l isValue 0
    set -l ended 0
    for word in $words[3..]
        if test $isValue = 1
            set isValue 0
        else if test $ended = 1; or not string match --quiet --regex '^-.' -- $word
            printf '%s\n' $word
        else if test "$word" = --
            set ended 1
        else
            # The name of an option may be shortened.
            for value in $values
                test (string sub --length (string length -- $word) -- $value) = "$word"; and set isValue 1
            end
        end
    end
end

# Whether the command is one of those given behind the number, and so many operands stand before the cursor.
function __orvane_awaits
    __orvane_is $argv[2..]; and test (count (__orvane_operands)) = $argv[1]
end

function __orvane_is
    set -l words (commandline -opc)
    contains -- "$words[2]" $argv
end

function __orvane_has_no_command
    test (count (commandline -opc)) = 1
end

# Names for --set, each with the sign that its value follows.
function __orvane_variables
    set -l operands (__orvane_operands)
    test -n "$operands[1]"; or return
    __orvane_show $operands[1] | while read --local name
        __orvane_has_controls $name; or printf '%s=\tVariable\n' (__orvane_unescaped $name)
    end
end

complete -c orvane -f
complete -c orvane -l help -d 'Show help'
complete -c orvane -n __orvane_has_no_command -l version -d 'Show the version'
complete -c orvane -n __orvane_has_no_command -a list -d 'Show the presets'
complete -c orvane -n __orvane_has_no_command -a show -d 'Show one preset'
complete -c orvane -n __orvane_has_no_command -a create -d 'Make the folder of a preset'
complete -c orvane -n __orvane_has_no_command -a import -d 'Make a preset from a folder'
complete -c orvane -n __orvane_has_no_command -a export -d 'Write a preset to a file'
complete -c orvane -n __orvane_has_no_command -a add -d 'Add the preset in a file'
complete -c orvane -n __orvane_has_no_command -a check -d 'Look for mistakes in presets'
complete -c orvane -n __orvane_has_no_command -a menu -d 'Pop up the menu of the helper'
complete -c orvane -n __orvane_has_no_command -a notify -d 'Tell the running helper of changes'
complete -c orvane -n __orvane_has_no_command -a recover -d 'What killed creations left'
complete -c orvane -n __orvane_has_no_command -a help -d 'Tell about a command'
complete -c orvane -n '__orvane_awaits 0 help' -a 'list show create import export add check menu notify recover'

complete -c orvane -n '__orvane_is list show create check' -l json -d 'Print JSON'
complete -c orvane -k -n '__orvane_awaits 0 show create export check' -a '(__orvane_presets)'
complete -c orvane -n '__orvane_is create menu' -l in -x -a '(__fish_complete_directories)' -d 'Parent folder'
complete -c orvane -n '__orvane_is create' -l set -x -a '(__orvane_variables)' -d 'NAME=VALUE of a variable'
complete -c orvane -n '__orvane_is create' -l no-input -d 'Take defaults without asking'
complete -c orvane -n '__orvane_is create' -l no-open -d 'Do not open the new folder'
complete -c orvane -n '__orvane_is create' -l dry-run -d 'Show what would be made'
complete -c orvane -n '__orvane_is import' -l label -x -d 'Label of the preset'
complete -c orvane -n '__orvane_is import' -l variable -x -d 'TEXT=NAME'
complete -c orvane -n '__orvane_is import' -l with-content -d 'Copy the contents of files'
complete -c orvane -n '__orvane_awaits 0 import' -a '(__fish_complete_directories)'
complete -c orvane -n '__orvane_is recover' -l remove -d 'Remove what was made'
complete -c orvane -n '__orvane_is recover' -l keep -d 'Keep everything'
complete -c orvane -n '__orvane_is export' -l force -d 'Replace an existing file'
complete -c orvane -n '__orvane_awaits 0 add check; or __orvane_awaits 1 export' -F
