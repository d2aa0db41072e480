# Completion for torvane-cli: commands, options, and the names of lists and prefixes.
_torvane_cli() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command='' prefix=() at
  local options='--json --prefix --help --version'
  local deletion='--keep --unreachable --dry-run --backup'
  COMPREPLY=()
  for ((at = 1; at < COMP_CWORD; ++at)); do
    case ${COMP_WORDS[at]} in
      --prefix) prefix=(--prefix "${COMP_WORDS[++at]}") ;;
      lists | show | delete | clean | export | prefixes) command=${COMP_WORDS[at]}; break ;;
    esac
  done
  case $before in
    --backup | --output | -o | --prefix)
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      compopt -o filenames
      return ;;
    --keep | --match | --entry | --category | --ini-folder) return ;;
  esac
  if [[ $word == -* ]]; then
    case $command in
      lists) options+=' --all' ;;
      show) options+=' --ini-folder' ;;
      delete) options+=" --missing --all --entry --match --ini-folder $deletion" ;;
      clean) options+=" --missing --category $deletion" ;;
      export) options+=' --output' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  elif [[ -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W 'lists show delete clean export prefixes' -- "$word")
  elif [[ $command == @(show|delete|export) ]]; then
    # Names have blanks, so they are offered quoted for the shell, and compared without its quotes.
    local name plain
    plain=${word#[\'\"]}
    plain=${plain//\\/}
    while IFS= read -r name; do
      [[ ${name,,} == "${plain,,}"* ]] && COMPREPLY+=("$(printf %q "$name")")
    done < <(torvane-cli "${prefix[@]}" lists 2>/dev/null |
      sed -E '1d; s/ +[0-9]+ +[0-9]+$//')
  fi
}
complete -F _torvane_cli torvane-cli
