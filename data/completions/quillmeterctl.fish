# fish completion of quillmeterctl

set -l commands status watch layout widget usage agents connect disconnect enable disable screentime record settings quick update
set -l providers codex claude qwenOffice workBuddy opencode hermes openclaw pi
set -l none "not __fish_seen_subcommand_from $commands"
set -l changing "__fish_seen_subcommand_from disconnect enable disable"
set -l settings "__fish_seen_subcommand_from settings"

complete -c quillmeterctl -f
complete -c quillmeterctl -s h -l help -d 'Show help'
complete -c quillmeterctl -l language -x -a 'zh-Hans en' -d 'Language of the output'
complete -c quillmeterctl -n $none -l version -d 'Show the version'
complete -c quillmeterctl -n $none -a status -d 'One sample of the machine'
complete -c quillmeterctl -n $none -a watch -d 'Machine and tokens, live'
complete -c quillmeterctl -n $none -a layout -d 'Cards of the dashboard and the menu bar'
complete -c quillmeterctl -n $none -a widget -d 'The record that widgets read'
complete -c quillmeterctl -n $none -a usage -d 'Tokens of today, this week and this month'
complete -c quillmeterctl -n $none -a agents -d 'The eight agents and their state'
complete -c quillmeterctl -n $none -a connect -d 'Allow reading a log folder'
complete -c quillmeterctl -n $none -a disconnect -d 'Forget a folder'
complete -c quillmeterctl -n $none -a enable -d 'Count an agent'
complete -c quillmeterctl -n $none -a disable -d 'Stop counting an agent'
complete -c quillmeterctl -n $none -a screentime -d 'Screen time of a day or a week'
complete -c quillmeterctl -n $none -a record -d 'Record screen time in the foreground'
complete -c quillmeterctl -n '__fish_seen_subcommand_from screentime' -l json -d 'Print JSON'
complete -c quillmeterctl -n '__fish_seen_subcommand_from screentime' -l csv -d 'Print CSV'
complete -c quillmeterctl -n '__fish_seen_subcommand_from screentime' -l day -x -d 'This day'
complete -c quillmeterctl -n '__fish_seen_subcommand_from screentime' -l week -x -d 'The week that holds this day'
complete -c quillmeterctl -n '__fish_seen_subcommand_from screentime record' -l archive -r -F -d 'Record file'
complete -c quillmeterctl -n $none -a quick -d 'Network, Wi-Fi and sound output'
complete -c quillmeterctl -n $none -a update -d 'Check for a newer version'
complete -c quillmeterctl -n $none -a settings -d 'List, read or change settings'
complete -c quillmeterctl -n '__fish_seen_subcommand_from usage agents status layout quick update' -l json -d 'Print JSON'
complete -c quillmeterctl -n '__fish_seen_subcommand_from watch' -l interval -x -d 'Seconds between two samples'
complete -c quillmeterctl -n '__fish_seen_subcommand_from connect' -l all -d 'All agents that are found'
complete -c quillmeterctl -n '__fish_seen_subcommand_from quick; and not __fish_seen_subcommand_from volume balance mute output' -a 'volume balance mute output'
complete -c quillmeterctl -n '__fish_seen_subcommand_from layout' -a 'dashboard menubar'
complete -c quillmeterctl -n '__fish_seen_subcommand_from usage' -l range -x -a 'today week month' -d 'Range of the bars'
complete -c quillmeterctl -n '__fish_seen_subcommand_from usage' -l now -x -d 'Take this instant for now'
complete -c quillmeterctl -n '__fish_seen_subcommand_from usage' -l folder -x -a "(printf '%s=\n' $providers)" -d 'Count this folder only'
complete -c quillmeterctl -n '__fish_seen_subcommand_from usage' -l verbose -d 'Name the files that cannot be read'
complete -c quillmeterctl -n "__fish_seen_subcommand_from connect; and not __fish_seen_subcommand_from $providers" -a "$providers"
complete -c quillmeterctl -n "__fish_seen_subcommand_from connect; and __fish_seen_subcommand_from $providers" -a '(__fish_complete_directories)'
complete -c quillmeterctl -n "$changing; and not __fish_seen_subcommand_from $providers" -a "$providers"
complete -c quillmeterctl -n "$settings; and not __fish_seen_subcommand_from get set unset" -a 'get set unset'
complete -c quillmeterctl -n "$settings; and __fish_seen_subcommand_from get set unset" -a "(quillmeterctl settings 2>/dev/null | string match -rg '^(\S+\.\S+)')"
