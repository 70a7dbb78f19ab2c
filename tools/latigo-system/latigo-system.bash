# Completion of latigo-system(1) for bash: commands, options and files.

_latigo_system() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} options
  COMPREPLY=()
  case $previous in
    --format) mapfile -t COMPREPLY < <(compgen -W 'all pipeline proj wkt' -- "$current") && return ;;
    --authority) mapfile -t COMPREPLY < <(compgen -W 'EPSG ESRI IGNF' -- "$current") && return ;;
    --name | --operation | --area | --points | --section | -s | --jobs) return ;;
  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'import operations export search pack --help --version' -- "$current")
  elif [[ $current == -* ]]; then
    case ${COMP_WORDS[1]} in
      import) options='--help --name --operation --area --no-datum --points' ;;
      operations) options='--help' ;;
      export) options='--help --section --format' ;;
      search) options='--help --area' ;;
      pack) options='--help --authority --report --jobs --points' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}

complete -F _latigo_system latigo-system
