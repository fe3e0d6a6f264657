# shellcheck shell=bash
# Completion of veskctl(1) for bash. Commands, options, services and methods come from the output of the program.

# Sets `words` to the words up to the cursor. Bash also splits words at : = and @, but a candidate replaces everything from
# the @ on.
_veskctl_words() {
  local rest=$COMP_LINE piece i
  words=()
  for ((i = 0; i <= COMP_CWORD; i++)); do
    piece=${COMP_WORDS[i]}
    if [[ $i -eq 0 || $rest == [[:space:]]* || -z $rest ]]; then
      words+=("$piece")
    else
      words[${#words[@]} - 1]+=$piece
    fi
    rest=${rest#"${rest%%[![:space:]]*}"}
    rest=${rest#"$piece"}
  done
}

# Prints the names of the interfaces: the first words of the lines that are not indented.
_veskctl_interfaces() {
  "$1" methods 2>/dev/null | sed -n 's/^\([a-z-]\{1,\}\) .*/\1/p'
}

# _veskctl_offer CURRENT CANDIDATE...
_veskctl_offer() {
  local current=$1 candidate
  shift
  for candidate; do
    [[ $candidate == "$current"* ]] && COMPREPLY+=("$candidate")
  done
}

# _veskctl_methods PROGRAM SERVICE CURRENT: several candidates are shown with their parameters; a single one is inserted without.
_veskctl_methods() {
  local code signature
  while read -r code signature; do
    [[ $code == [0-9]* && $signature == "$3"* ]] && COMPREPLY+=("$signature")
  done < <("$1" methods "$2" 2>/dev/null)
  [[ ${#COMPREPLY[@]} -ne 1 ]] || COMPREPLY=("${COMPREPLY[0]%%(*}")
}

# _veskctl_argument PROGRAM SERVICE METHOD INDEX CURRENT
_veskctl_argument() {
  local code signature parameters=() parameter='' files
  while read -r code signature; do
    if [[ $code == "$3" || ${signature%%(*} == "$3" ]]; then
      signature=${signature#*(}
      IFS=, read -ra parameters <<<"${signature%%)*}"
      parameter=${parameters[$4]-}
      parameter=${parameter# }
    fi
  done < <("$1" methods "$2" 2>/dev/null)
  case $parameter in
    'bool '*) _veskctl_offer "$5" true false ;;
    'listener '*) _veskctl_offer "$5" - @watch ;;
    'record '*)
      compopt -o nospace 2>/dev/null
      if [[ $5 == @* ]]; then
        mapfile -t files < <(compgen -f -- "${5#@}")
        _veskctl_offer "$5" "${files[@]/#/@}"
      else
        _veskctl_offer "$5" @ hex: zero:
      fi
      ;;
    # Two candidates without a common prefix: bash shows the parameter and inserts nothing.
    ?*) [[ -n $5 ]] || COMPREPLY=("<$parameter>" ' ') ;;
  esac
}

_veskctl() {
  local program=$1 words current command='' operands=() word i
  _veskctl_words
  current=${words[-1]}
  COMPREPLY=()

  for ((i = 1; i < ${#words[@]} - 1; i++)); do
    word=${words[i]}
    case $word in
      --timeout | --color | --colour | --at)
        # After the service, every word is an argument.
        if [[ ${#operands[@]} -eq 0 ]]; then
          i=$((i + 1))
          continue
        fi
        ;;
    esac
    if [[ $word == -* && ${#operands[@]} -eq 0 ]]; then
      continue
    elif [[ -z $command ]]; then
      command=$word
    else
      operands+=("$word")
    fi
  done

  local before=${words[${#words[@]} - 2]}
  if [[ ${#operands[@]} -eq 0 && $before == --colo*r ]]; then
    _veskctl_offer "$current" auto always never
  elif [[ ${#operands[@]} -eq 0 && ($before == --timeout || $before == --at) ]]; then
    return
  elif [[ ${#operands[@]} -eq 0 && $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$program" ${command:+"$command"} --help 2>/dev/null |
      sed -n '/^  -/p' | grep -o -e '--[a-z]*')" -- "$current")
  elif [[ -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$program" --help 2>/dev/null |
      sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')" -- "$current")
  else
    local names=() chosen
    mapfile -t names < <(_veskctl_interfaces "$program")
    case $command in
      methods) _veskctl_offer "$current" "${names[@]}" ;;
      ping)
        for chosen in "${names[@]}"; do
          [[ $chosen == *-events ]] || _veskctl_offer "$current" "$chosen"
        done
        ;;
      watch)
        for chosen in "${names[@]}"; do
          [[ $chosen != *-events ]] || _veskctl_offer "$current" "${chosen%-events}"
        done
        ;;
      call)
        case ${#operands[@]} in
          0) _veskctl_offer "$current" "${names[@]}" ;;
          1) _veskctl_methods "$program" "${operands[0]}" "$current" ;;
          *) _veskctl_argument "$program" "${operands[0]}" "${operands[1]}" $((${#operands[@]} - 2)) "$current" ;;
        esac
        ;;
    esac
  fi
}

complete -F _veskctl veskctl
