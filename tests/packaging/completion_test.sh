#!/usr/bin/env bash
# Runs the bash completion for loomcrest against the real program with a private HOME and
# checks what it offers in each place of the command line.
# Usage: completion_test.sh LOOMCREST_BINARY COMPLETION_FILE
set -uo pipefail

binary=$1
completion=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
ln -s "$binary" "$work/bin/loomcrest"
export HOME="$work" PATH="$work/bin:$PATH"
loomcrest add Alpha alpha.example >/dev/null
loomcrest add "Beta Site" beta.example >/dev/null
loomcrest add Gamma gamma.example >/dev/null
loomcrest add set set.example >/dev/null

# shellcheck source=/dev/null
source "$completion"

failures=0
# compopt only works inside a completion readline started; here it records what was asked.
compopt() { compopt_options=$*; }
# expect "COMMAND LINE WITH | AT THE CURSOR" "EXPECTED REPLIES, ONE A LINE"
# The replies "<files>" mean none of its own but readline's file names.
expect() {
    local line=$1 wanted=$2
    local before=${line%%|*}
    # A quoted blank ("\ ") stays inside its word, as readline splits it.
    local escaped=${before//\\ /$'\x1f'}
    read -r -a COMP_WORDS <<<"$escaped"
    COMP_WORDS=("${COMP_WORDS[@]//$'\x1f'/\\ }")
    [[ $before == *" " ]] && COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=()
    compopt_options=""
    _loomcrest
    local got
    got=$(printf '%s\n' "${COMPREPLY[@]}")
    [[ $compopt_options == "-o default" && -z $got ]] && got="<files>"
    if [[ $got != "$wanted" ]]; then
        printf 'FAIL: %s\n  wanted: %s\n  got:    %s\n' "$line" "${wanted//$'\n'/ }" \
            "${got//$'\n'/ }"
        failures=$((failures + 1))
    fi
}

expect "loomcrest s|" $'sites\nshow\nsettings\nscan'
expect "loomcrest --v|" "--version"
expect "loomcrest show |" $'Alpha\nBeta\\ Site\nGamma\nset'
expect "loomcrest scan B|" 'Beta\ Site'
expect "loomcrest scan Beta\\ S|" 'Beta\ Site'
expect "loomcrest add |" ""
expect "loomcrest scan --|" $'--help\n--on-warning\n--json\n--fail-on-broken\n--explain\n--connections\n--rate\n--user-agent\n--fetch-once\n--header\n--no-headers\n--netrc'
expect "loomcrest scan --explain |" "<files>"
expect "loomcrest broken Alpha --format |" $'text\ntsv\ncsv\njson'
expect "loomcrest scan --on-warning |" $'continue\ncancel'
expect "loomcrest scan --on-warning = ca|" "cancel"
expect "loomcrest scan --on-warning cancel A|" "Alpha"
expect "loomcrest scan --on-warning = cancel A|" "Alpha"
expect "loomcrest robots Alpha |" $'ignore\nobey'
expect "loomcrest edit --name |" ""
expect "loomcrest edit --name New G|" "Gamma"
# Nested subcommands: each level's positionals, then its subcommands, then its own options.
expect "loomcrest html Alpha |" $'3c\n2c\n1c\n3cpo\n2cpo\n1cpo'
expect "loomcrest html Alpha 3c|" $'3c\n3cpo'
expect "loomcrest html Beta\\ Site 2cpo |" $'lines\nstyle\nedit\ndelete\npreview'
expect "loomcrest html Alpha 2cpo --|" "--help"
expect "loomcrest html Alpha 1c edit --ti|" "--title"
expect "loomcrest html Alpha 1c style --pt-bold on --pl-b|" "--pl-bold"
expect "loomcrest html Alpha 1c style --pl-underline |" $'hover\nnone\nalways'
expect "loomcrest html Alpha 1c style --pt-size 1|" $'1em\n1.1em\n1.2em\n1.3em\n1.4em'
expect "loomcrest html Alpha 1c style --pt-face Ge|" 'Georgia\,\ Times\ New\ Roman\,\ Times\,\ serif
Geneva\,\ Arial\,\ Helvetica\,\ sans-serif'
expect "loomcrest html Alpha 1c style --pt-bold on |" ""
expect "loomcrest export Gamma |" $'3c\n2c\n1c\n3cpo\n2cpo\n1cpo\nxml\nbroken-html\nbroken-txt'
expect "loomcrest export Alpha 3c |" "<files>"
expect "loomcrest xml Alpha |" $'list\nset\ndelete'
expect "loomcrest xml Alpha se|" "set"
expect "loomcrest xml set |" $'list\nset\ndelete'
expect "loomcrest xml Alpha set 2 |" $'loc\nlastmod\nchangefreq\npriority'
expect "loomcrest xml Alpha delete 2 |" ""
expect "loomcrest filters Alpha |" $'list\nadd\ndelete'

if ((failures > 0)); then
    echo "$failures completion case(s) failed"
    exit 1
fi
echo "every completion case passed"
