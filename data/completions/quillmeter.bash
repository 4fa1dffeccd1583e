# bash completion of quillmeter

_quillmeter() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}
  local words="--hidden --action --help --version"
  [ "$prev" != --action ] || words="open-dashboard open-settings toggle-popover refresh quit"
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
}

complete -F _quillmeter quillmeter
