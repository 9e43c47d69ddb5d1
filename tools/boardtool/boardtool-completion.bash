# bash completion of boardtool: commands, each command's options, parameter
# names after --param, folders after --data-dir, --repo and --schema-dir,
# board names where a command takes one (from the catalog that the options
# on the line select), folders for the folder that site writes, and files
# elsewhere. Everything is asked of boardtool
# itself, so that the completion follows the program it completes.
_boardtool() {
  local cur=${COMP_WORDS[COMP_CWORD]}
  local prev=${COMP_WORDS[COMP_CWORD - 1]}
  local tool=${COMP_WORDS[0]}
  COMPREPLY=()

  if [ "$COMP_CWORD" -eq 1 ]; then
    local commands
    commands=$("$tool" --help 2>/dev/null | sed -n '/^Commands:/,/^$/s/^  \([a-z]\+\) .*/\1/p')
    mapfile -t COMPREPLY < <(compgen -W "$commands --help --version" -- "$cur")
    return
  fi

  local command=${COMP_WORDS[1]}
  case "$prev" in
    --data-dir | --repo | --schema-dir)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$cur")
      return
      ;;
    --param)
      local names
      names=$("$tool" params --all 2>/dev/null | awk '{print $1 "="}')
      mapfile -t COMPREPLY < <(compgen -W "$names" -- "$cur")
      compopt -o nospace 2>/dev/null
      return
      ;;
    -o)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$cur")
      return
      ;;
    --debug | --jobs | --name | --connect | --jumper | -e)
      return
      ;;
  esac

  if [[ $cur == -* ]]; then
    local options
    options=$("$tool" "$command" --help 2>/dev/null |
      sed -n '/^Options:/,/^$/s/^  \(--\?[a-z][a-z=-]*\).*/\1/p')
    mapfile -t COMPREPLY < <(compgen -W "$options --help" -- "$cur")
    return
  fi

  case "$command" in
    show | dump | fit | compose | diagram)
      # The boards of the catalog that the line's own options select.
      local i load=()
      for ((i = 2; i < COMP_CWORD; i++)); do
        case "${COMP_WORDS[i]}" in
          --data-dir | --repo) load+=("${COMP_WORDS[i]}" "${COMP_WORDS[i + 1]}") ;;
        esac
      done
      local boards
      boards=$("$tool" catalog "${load[@]}" 2>/dev/null | awk 'NR > 1 && $1 ~ /:/ {print $1}')
      # A board name holds colons, at which bash splits words: the name typed
      # so far is the line's last word, and what replaces the current word is
      # what follows its last colon.
      local line=${COMP_LINE:0:COMP_POINT}
      local name=${line##*[[:space:]]}
      local IFS=$'\n'
      mapfile -t COMPREPLY < <(compgen -W "$boards" -- "$name")
      if [[ $COMP_WORDBREAKS == *:* && $name == *:* ]]; then
        local prefix=${name%"${name##*:}"}
        COMPREPLY=("${COMPREPLY[@]#"$prefix"}")
      fi
      if [ "$command" = dump ] || [ "$command" = diagram ]; then
        compopt -o filenames 2>/dev/null
        mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$cur")
      fi
      ;;
    site)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$cur")
      ;;
    *)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$cur")
      ;;
  esac
}
complete -F _boardtool boardtool
