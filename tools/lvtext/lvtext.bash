# Completion of lvtext's arguments in bash. Where there is nothing to offer, it is files.

_lvtext() {
  local current=${COMP_WORDS[COMP_CWORD]}
  local verb=${COMP_WORDS[1]}
  local offered="--help --help-all"
  if [ "$COMP_CWORD" -eq 1 ]; then
    offered+=" check print format to-json from-json graph diff stats"
  elif [[ $current = -* ]]; then
    offered+=" --class"
    case "$verb" in
      format) offered+=" --sort --width" ;;
      to-json | from-json) offered+=" --strict" ;;
      graph) offered+=" --svg" ;;
    esac
  else
    offered=""
  fi
  mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$current")
}

complete -o default -F _lvtext lvtext
