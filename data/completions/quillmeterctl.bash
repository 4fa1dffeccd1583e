# bash completion of quillmeterctl

_quillmeterctl() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} command= action= word i
  local providers="codex claude qwenOffice workBuddy opencode hermes openclaw pi"
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    case $word in
    --language) ((i++)) ;;
    -*) ;;
    *)
      if [ -z "$command" ]; then
        command=$word
      else
        action=${action:-$word}
      fi
      ;;
    esac
  done
  case $prev in
  --language) mapfile -t COMPREPLY < <(compgen -W "zh-Hans en" -- "$cur"); return ;;
  --range) mapfile -t COMPREPLY < <(compgen -W "today week month" -- "$cur"); return ;;
  --folder) mapfile -t COMPREPLY < <(compgen -S = -W "$providers" -- "$cur"); compopt -o nospace; return ;;
  --now | --interval | --day | --week) return ;;
  --archive) mapfile -t COMPREPLY < <(compgen -f -- "$cur"); compopt -o filenames; return ;;
  =) mapfile -t COMPREPLY < <(compgen -d -- "$cur"); compopt -o filenames; return ;;
  esac
  if [[ $cur == -* ]]; then
    local options="--help --language"
    case $command in
    "") options+=" --version" ;;
    usage) options+=" --json --range --now --folder --verbose" ;;
    agents | status | layout | quick | update) options+=" --json" ;;
    connect) options+=" --all" ;;
    watch) options+=" --interval" ;;
    screentime) options+=" --json --csv --day --week --archive" ;;
    record) options+=" --archive" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
    return
  fi
  case $command in
  "") mapfile -t COMPREPLY < <(compgen -W "status watch usage layout widget agents connect disconnect enable disable screentime record settings quick update" -- "$cur") ;;
  connect)
    if [ -z "$action" ]; then
      mapfile -t COMPREPLY < <(compgen -W "$providers" -- "$cur")
    else
      mapfile -t COMPREPLY < <(compgen -d -- "$cur")
      compopt -o filenames
    fi
    ;;
  disconnect | enable | disable) [ -n "$action" ] || mapfile -t COMPREPLY < <(compgen -W "$providers" -- "$cur") ;;
  quick) [ -n "$action" ] || mapfile -t COMPREPLY < <(compgen -W "volume balance mute output" -- "$cur") ;;
  layout) [ -n "$action" ] || mapfile -t COMPREPLY < <(compgen -W "dashboard menubar" -- "$cur") ;;
  settings)
    if [ -z "$action" ]; then
      mapfile -t COMPREPLY < <(compgen -W "get set unset" -- "$cur")
    elif [ "$prev" = "$action" ]; then
      mapfile -t COMPREPLY < <(compgen -W "$("${COMP_WORDS[0]}" settings 2>/dev/null | sed -n '2,$s/ .*//p')" -- "$cur")
    fi
    ;;
  esac
}
complete -F _quillmeterctl quillmeterctl
