# Completion of nimbara for bash. The program knows its words; files are offered where it knows none.
_nimbara() {
  local word
  COMPREPLY=()
  while IFS=$'\t' read -r word _; do
    COMPREPLY+=("$(printf '%q' "$word")")
  done < <("${COMP_WORDS[0]}" complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
}
complete -o default -F _nimbara nimbara
