# fish completion of quillmeter

complete -c quillmeter -f
complete -c quillmeter -s h -l help -d 'Show help'
complete -c quillmeter -l version -d 'Show the version'
complete -c quillmeter -l hidden -d 'Only the icon in the tray'
complete -c quillmeter -l action -x -a 'open-dashboard open-settings toggle-popover refresh quit' -d 'What the running program shall do'
