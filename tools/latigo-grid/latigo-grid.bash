# Completion of latigo-grid(1) for bash: commands, options and files.

_latigo_grid() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} options
  local source='--help --sub-grid --nodata --interpolation --reverse --lonlat' points='--points --seed'
  COMPREPLY=()
  case $previous in
    --interpolation) mapfile -t COMPREPLY < <(compgen -W 'bilinear bicubic' -- "$current") && return ;;
    --exact) mapfile -t COMPREPLY < <(compgen -W 'to from' -- "$current") && return ;;
    --tolerance) mapfile -t COMPREPLY < <(compgen -W '1mm 1cm 10cm' -- "$current") && return ;;
    --sub-grid | --nodata | --points | --seed | --max-size | --area) return ;;
  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'make info at compare --help --version' -- "$current")
  elif [[ $current == -* ]]; then
    case ${COMP_WORDS[1]} in
      make) options="$source $points --output --tolerance --max-size --area --cut --exact" ;;
      info) options="$source --svg" ;;
      at) options=$source ;;
      compare) options="$source $points" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}

complete -F _latigo_grid latigo-grid
