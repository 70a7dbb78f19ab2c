# Completion of latigo(1) for bash: commands, options, files, and the sections of the file on the line.

_latigo_sections() {
  local word
  for word in "${COMP_WORDS[@]:2}"; do
    [ -f "$word" ] && sed -n 's/^[[:blank:]]*\[\(.*\)\].*/\1/p' "$word" && return
  done
}

_latigo() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} options
  local points='--help --section --precision --jobs --dms --lonlat'
  COMPREPLY=()
  case $previous in
    -s | --section)
      local IFS=$'\n'
      mapfile -t COMPREPLY < <(compgen -W "$(_latigo_sections)" -- "$current")
      return ;;
    --lang) mapfile -t COMPREPLY < <(compgen -W 'eng fra esp' -- "$current") && return ;;
    --precision | --jobs) return ;;
  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'info forward inverse scale undulation ecef distance --help --version' -- "$current")
  elif [[ $current == -* ]]; then
    case ${COMP_WORDS[1]} in
      info) options='--help --section --lang' ;;
      forward | inverse | undulation) options="$points --wgs84" ;;
      scale) options="$points --wgs84 --grid" ;;
      ecef) options="$points --inverse" ;;
      distance) options="$points --rhumb" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}

complete -F _latigo latigo
