# Completion of latigo(1) for bash: commands, options, files, and the sections of the file on the line.

# Section names come from a file that anybody may have written, and compgen -W would expand them. So they are compared in
# a loop, and each is quoted so that the command line takes it as one word of plain text. Inside quotes that the user has
# opened only harmless names are offered.
#   _latigo_sections TYPED [OPTION]   sets COMPREPLY; the file is the one after OPTION, or the first of the line
_latigo_sections() {
  local word name typed=$1 harmless='*' i first=2
  for ((i = 2; i < COMP_CWORD; ++i)); do
    [ -z "${2-}" ] || [ "${COMP_WORDS[i]}" != "$2" ] || first=$((i + 1))
  done
  case $typed in
    [\'\"]*) typed=${typed:1} harmless='*([[:alnum:]_.,:+ /()-])' ;;
    *) typed=${typed//\\/} ;;
  esac
  local LC_ALL=C
  for word in "${COMP_WORDS[@]:first}"; do
    word=${word//[\\\'\"]/}
    [ -f "$word" ] || continue
    while IFS= read -r name; do
      name=${name%"${name##*[![:blank:]]}"}
      # shellcheck disable=SC2053  # the right side is a pattern
      if [[ $name == "$typed"* && $name == $harmless ]]; then
        [ "$harmless" != '*' ] || printf -v name '%q' "$name"
        COMPREPLY+=("$name")
      fi
    done < <(sed -n 's/^[[:blank:]]*\[[[:blank:]]*\(.*\)\].*/\1/p' "$word" | tr -d '\000\r')
    break
  done
}

_latigo() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} options
  local points='--help --output --section --strict --precision --jobs --dms --lonlat --separator'
  points+=' --columns --header --decimal-comma --dms-columns --append'
  local shift='--wgs84 --outside-grid' heights='--geoid-on-datum --no-height'
  COMPREPLY=()
  case $previous in
    -s | --section)
      _latigo_sections "$current"
      return ;;
    --to-section)
      _latigo_sections "$current" --to
      return ;;
    --heights) mapfile -t COMPREPLY < <(compgen -W 'geoid ellipsoidal' -- "$current") && return ;;
    --lang) mapfile -t COMPREPLY < <(compgen -W 'eng fra esp' -- "$current") && return ;;
    --separator) mapfile -t COMPREPLY < <(compgen -W 'auto comma semicolon tab blank' -- "$current") && return ;;
    --header) mapfile -t COMPREPLY < <(compgen -W 'auto yes no' -- "$current") && return ;;
    --outside-grid) mapfile -t COMPREPLY < <(compgen -W 'fail unshifted' -- "$current") && return ;;
    --datum) mapfile -t COMPREPLY < <(compgen -W 'geographic cartesian' -- "$current") && return ;;
    --reverse) mapfile -t COMPREPLY < <(compgen -W 'none x y both' -- "$current") && return ;;
    --precision | --jobs | --columns | --sigma | --name | --area) return ;;
  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'info check list template forward inverse convert scale factors undulation ecef distance fit map --help --version' -- "$current")
  elif [ "${COMP_WORDS[1]} $COMP_CWORD" = 'template 2' ] && [[ $current != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W 'utm lcc mer tme ost ocy hom rso azd smerc ala cas pst' -- "$current")
  elif [ "${COMP_WORDS[1]} ${COMP_WORDS[2]} $COMP_CWORD" = 'template utm 3' ] && [[ $current != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(printf '%s ' {1..60}{N,S})" -- "$current")
  elif [[ $current == -* ]]; then
    case ${COMP_WORDS[1]} in
      info) options='--help --output --section --strict --lang' ;;
      check) options='--help --section --strict' ;;
      list | template) options='--help --output' ;;
      forward | inverse) options="$points $shift $heights" ;;
      convert) options="$points --outside-grid $heights --to --to-section --from-geographic --to-geographic --same-datum --heights" ;;
      factors) options="$points $shift $heights --grid" ;;
      undulation) options="$points $shift --geoid-on-datum" ;;
      scale) options="$points $shift --grid" ;;
      ecef) options="$points $shift --inverse" ;;
      distance) options="$points $shift --rhumb --arc-to-chord" ;;
      fit)
        options='--help --output --section --strict --datum --fix-scale --reverse --sigma --weights --deviations --name'
        options+=' --columns --separator --header --decimal-comma --dms-columns' ;;
      map)
        options='--help --output --section --strict --area --points --grid --lonlat'
        options+=' --columns --separator --header --decimal-comma --dms-columns' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}

complete -F _latigo latigo
