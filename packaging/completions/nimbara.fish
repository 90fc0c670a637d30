# Completion of nimbara for fish. The program knows its words; files are offered where it knows none.
function __nimbara_words
    set -l before (commandline -opc)
    nimbara complete -- $before[2..-1] (commandline -ct) 2>/dev/null
end
complete -c nimbara -f -n 'test -n "$(__nimbara_words)"' -a '(__nimbara_words)'
complete -c nimbara -F -n 'test -z "$(__nimbara_words)"'
