#!/usr/bin/env bash
# Completes section names with special characters: nothing in them is executed, and the inserted text is read as the name.
#   tests/completion.sh latigo.bash
set -euo pipefail
completion=$(realpath "$1")
cd "$(mktemp -d)"
trap 'rm -rf "$PWD"' EXIT
source "$completion"
names=('a$(touch ran)b' 'a`touch ran`b' 'a b' "a'b" 'a"b' 'a*' 'a?[x]' 'a;touch ran' 'a&b' 'a\b' $'a\e[31mb' 'a$PATH' 'aÿ' 'aGrid')
{ printf '[%s]\n' "${names[@]}" && printf 'Key=[a]\n  [ other ]  ; comment\r\n'; } >'my file.ini'
touch a-file-that-a-glob-would-find

# offered WORD   lists its completions, one per line
offered() {
  COMP_WORDS=(latigo info 'my\ file.ini' -s "$1") COMP_CWORD=4
  _latigo
  printf '%s\n' "${COMPREPLY[@]}"
}
mapfile -t found < <(offered a)
[ ! -e ran ] || { echo "a section's name was run" >&2 && exit 1; }
for i in "${!names[@]}"; do
  eval "word=${found[i]}" # as the shell reads the line when Enter is pressed
  [ "$word" = "${names[i]}" ] || { echo "${names[i]} is offered as ${found[i]}" >&2 && exit 1; }
done
[ ! -e ran ] && [ "${#found[@]}" = "${#names[@]}" ] || { echo "${#found[@]} names, or one was run" >&2 && exit 1; }
printf '[second]\n' >other.ini
COMP_WORDS=(latigo convert 'my\ file.ini' --to other.ini --to-section s) COMP_CWORD=6
_latigo
[ "${COMPREPLY[*]}" = second ] || { echo "the sections are not those of --to" >&2 && exit 1; }
[ "$(offered 'a\ ')" = 'a\ b' ] && [ "$(offered o)" = other ] && [ -z "$(offered x)" ]
[ "$(offered '"a')" = $'a b\naGrid' ] # within quotes nothing that the shell expands
COMP_WORDS=(latigo template utm 3) COMP_CWORD=3
_latigo
[ "${COMPREPLY[*]}" = "$(echo {3,{30..39}}{N,S})" ]
COMP_WORDS=(latigo map --area '') COMP_CWORD=3
_latigo
[ -z "${COMPREPLY[*]}" ]
