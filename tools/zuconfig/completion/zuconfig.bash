# Completion of zuconfig in bash 4.4 and later.
#
# No text from the line or from a file is ever evaluated: it is taken apart here, and stands in no
# arithmetic, no subscript and nothing that the shell expands again; what is offered is quoted. What
# is asked is the zuconfig that the shell finds by that name, whatever the line begins with, and it
# has a second to answer.
#
# File names are left to bash, which knows how to quote them: it completes one whenever there is no
# answer here. bash-completion loads this file inside a function: a variable would be gone after it.

_zuconfig_ask() {
  command timeout 1 zuconfig "$@" 2>/dev/null </dev/null
}

# Sets choices to the options of a sub-command, or to the values of one of them.
_zuconfig_choices() {  # COMMAND [OPTION]
  case $1:$2 in
    check:)
      choices=(-I --for --format --help --ignore --no-validate --schema --set --show-secrets --strict
        --validate)
      ;;
    check:--format) choices=(json sarif text) ;;
    check:--ignore)
      choices=(deep-includes entity-element not-on-path padded-value renamed-setting repeated-section
        shadowed-file unknown-element unreachable-name unread-end xml)
      ;;
    diff:) choices=(-I --for --help --null --schema --show-secrets --validate) ;;
    dump:) choices=(-I --for --format --help --null --prefix --schema --show-secrets --validate) ;;
    dump:--format) choices=(json paths sh xml) ;;
    errors:) choices=(--help) ;;
    explain:) choices=(-I --for --help --schema --set --show-secrets --validate) ;;
    get:)
      choices=(-I --all --default --for --help --null --origin --schema --set --show-secrets
        --validate)
      ;;
    includes:) choices=(-I --format --help) ;;
    includes:--format) choices=(dot json svg tree) ;;
    list:) choices=(-I --for --help --null --schema --show-secrets --validate) ;;
    page:) choices=(-I --check --for --help --schema --show-secrets) ;;
    path:) choices=(-I --help --null) ;;
    schema:) choices=(--as --at --for --help) ;;
    schema:--as) choices=(example man md rng) ;;
    tree:) choices=(-I --for --help --origins --schema --set --show-secrets --validate) ;;
    watch:)
      choices=(-I --exec --for --format --help --null --once --schema --show-secrets --validate)
      ;;
    watch:--format) choices=(json text) ;;
    :)
      choices=(check diff dump errors explain get includes list page path schema tree watch
        --help --help-all --version)
      ;;
  esac
}

# Sets choices to the programs whose settings are described and that begin with word, behind the last
# comma in it.
_zuconfig_programs() {  # WORD
  local before='' directories directory file
  [[ $1 != *,* ]] || before=${1%,*},
  IFS=: read -ra directories <<<"${XDG_DATA_DIRS:-/usr/local/share:/usr/share}"
  directory=$(type -P zuconfig)
  for directory in "${XDG_DATA_HOME:-$HOME/.local/share}" "${directories[@]}" \
    "${directory%/*}/../share"; do
    for file in "$directory"/zu/settings/*.xml; do
      file=${file##*/}
      [[ $file != *[!A-Za-z0-9._-]*.xml ]] || continue
      [[ $before${file%.xml} != "$1"* ]] || choices+=("$before${file%.xml}")
    done
  done
}

# Sets text to what the shell makes of a word, opened to where its last quote begins and quote to the
# one that is open at its end. A word that holds more than plain text stays as it is.
_zuconfig_unquote() {  # WORD
  local i c
  text='' opened='' quote=''
  for ((i = 0; i < ${#1}; ++i)); do
    c=${1:i:1}
    case $quote$c in
      "''" | '""') quote='' ;;
      "'"?) text+=$c ;;
      '$' | '`' | '"$' | '"`') text=$1 && return ;;
      "'" | '"') quote=$c opened=$i ;;
      \\)
        ((++i))
        text+=${1:i:1}
        ;;
      '"'\\)
        [[ ${1:i+1:1} != [\"\\\$\`] ]] || ((++i))
        text+=${1:i:1}
        ;;
      *) text+=$c ;;
    esac
  done
  [[ $1 != '~' && $1 != '~/'* ]] || text=$HOME${text:1}
}

# Sets entries to the selectors that go on from text by one name and that the open quote can hold.
# Fails when there is no time left.
_zuconfig_entries() {  # LIST_ARGUMENT...
  local section='' in_name='' entry i
  entries=()
  # The section is what stands before the last dot that is not in a quoted name.
  for ((i = 0; i < ${#text}; ++i)); do
    case $in_name${text:i:1} in
      '"') in_name='"' ;;
      '""') in_name='' ;;
      '"'\\) ((++i)) ;;
      .) section=${text:0:i} ;;
    esac
  done
  [[ $section != *\** ]] || return 0  # it stands for many
  while IFS= read -rd '' entry; do
    ((SECONDS < deadline)) || return
    entry=${section:+$section.}$entry
    case $quote:$entry in
      *$'\n'*) ;;  # with its value: what should be a section is a property
      \':*\'* | \":*!*) ;;
      "$quote:$text"*) entries+=("$entry") ;;
    esac
  done < <(_zuconfig_ask list -0 "$@" ${section:+"$section"})
  ((SECONDS < deadline))
}

_zuconfig_quote() {  # ENTRY
  local entry=$1
  case $quote in
    \') ;;
    \")
      entry=${entry//\\/\\\\}
      entry=${entry//\$/\\\$}
      entry=${entry//\`/\\\`}
      entry=${entry//\"/\\\"}
      [[ $entry != *\" ]] || entry+=\"  # bash takes the last one for the end of the word
      ;;
    *)
      printf -v entry %q "$entry"
      if [[ $entry != \$\'* ]]; then  # or else bash would begin a word after them
        entry=${entry//:/\\:}
        entry=${entry//=/\\=}
        entry=${entry//@/\\@}
      fi
      ;;
  esac
  COMPREPLY+=("$entry")
}

# Completes a selector by what comes next in it.
_zuconfig_selectors() {  # WORD LIST_ARGUMENT...
  local text opened quote entries entry found=() deadline=$((SECONDS + 2))
  _zuconfig_unquote "$1"
  # What bash replaces begins after a quote and after one of these characters.
  [[ $quote$opened == ?0 || (! $opened && ! $1 =~ (^|[^\\])[:=@]) ]] || return
  ((COMP_TYPE != 42)) || quote=''  # insert-completions takes the quote away
  shift
  # A section alone is completed by what it holds: bash would close the quote behind it.
  while _zuconfig_entries "$@" && ((${#entries[@]} > 0)); do
    found=("${entries[@]}")
    [[ ${#found[@]} -eq 1 && ${found[0]} == *. ]] || break
    text=${found[0]}
  done
  [[ ${#found[@]} -ne 1 || ${found[0]} != *. ]] || compopt -o nospace
  for entry in "${found[@]}"; do _zuconfig_quote "$entry"; done
}

_zuconfig() {
  local rest=$COMP_LINE words=() files=() directories=() choices=() text opened quote part name i
  COMPREPLY=()

  # The words as the command gets them; bash splits them at "=" and ":", too.
  for part in "${COMP_WORDS[@]:0:COMP_CWORD+1}"; do
    if [[ ${#words[@]} -eq 0 || $rest == [[:space:]]* ]]; then
      words+=('')
      rest=${rest#"${rest%%[![:space:]]*}"}
    fi
    words[-1]+=$part
    rest=${rest#"$part"}
  done

  # What stands between the sub-command and the word to complete.
  for ((i = 2; i < ${#words[@]} - 1; ++i)); do
    _zuconfig_unquote "${words[i]}"
    case $text in
      -I)
        _zuconfig_unquote "${words[++i]}"
        directories+=(-I "$text")
        ;;
      --as | --at | --default | --exec | --for | --format | --ignore | --prefix | --schema | --set) ((++i)) ;;
      -?*) ;;
      *) files+=("$text") ;;
    esac
  done

  local word=${words[-1]} option=${words[-2]} command=''
  ((${#words[@]} == 2)) || command=${words[1]}
  if [[ $word == --*=* ]]; then
    option=${word%%=*}
    word=${word#*=}
  fi
  case $command:$option in
    ?*:-I) compopt +o bashdefault +o default -o dirnames; return ;;
    ?*:--exec | ?*:--schema) return ;;
    ?*:--at | ?*:--default | ?*:--prefix | ?*:--set) ;;
    ?*:--for)
      _zuconfig_programs "$word"
      ((${#choices[@]} > 0)) || return
      ;;
    ?*:--as | ?*:--format | ?*:--ignore) _zuconfig_choices "$command" "$option" ;;
    :*) _zuconfig_choices ;;
    *)
      case $command:${#files[@]}:$word in
        *:-*) _zuconfig_choices "$command" ;;
        errors:0:*)
          while IFS=$'\t' read -r _ name _; do choices+=("$name"); done < <(_zuconfig_ask errors)
          ;;
        errors:* | schema:*) ;;
        *:0:* | diff:1:* | page:1:* | check:*) return ;;
        explain:1:* | get:1:* | list:1:*)
          [[ ${files[0]} == - ]] ||
            _zuconfig_selectors "$word" "${directories[@]}" -- "${files[0]}"
          ;;
      esac
      ;;
  esac
  compopt +o bashdefault +o default
  for name in "${choices[@]}"; do
    [[ $name != "$word"* ]] || COMPREPLY+=("$name")
  done
}

complete -o bashdefault -o default -F _zuconfig zuconfig
