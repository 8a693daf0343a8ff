#!/usr/bin/env bash
# Writes a help2man include with a COMMANDS section made from each command's own --help and
# each of its subcommands' (e.g. "loomcrest html NAME 3c style --help"), so that the manual
# page describes every command, subcommand and option the program has.
# Usage: man-commands.sh LOOMCREST_BINARY OUTPUT
set -euo pipefail

binary=$1
output=$2

# The subcommands listed in the help read on standard input.
subcommands() {
    awk '/^[A-Z][a-z ]*:$/ { on = ($0 == "Subcommands:"); next } on && /^  [a-z0-9]/ { print $1 }'
}

# The positionals listed in the help read on standard input, one a line: the name, a tab and
# a word that will do in its place to reach a subcommand's help. That is any text, but for a
# positional with a fixed set of answers it must be one of them.
positionals() {
    awk -v OFS='\t' '/^[A-Z][a-z ]*:$/ { on = ($0 == "Positionals:"); next }
        on && /^  [A-Z]/ {
            print $1, (match($2, /\{[^,}]*/) ? substr($2, RSTART + 1, RLENGTH - 1) : $1)
        }'
}

commands=$("$binary" --help | subcommands)
if [ -z "$commands" ]; then
    echo "man-commands.sh: $binary --help lists no commands" >&2
    exit 1
fi

# One command's help in roff: its usage line as a subheading, its description, then each
# positional, option (but the --help every command has) and subcommand as a tagged paragraph.
# A usage line that starts with $1 starts with $2 instead: a subcommand's help leaves out
# the words its parent takes before it.
to_roff() {
    awk -v from="${1:-}" -v to="${2:-}" '
        function roff(text) {
            gsub(/\\/, "\\e", text); gsub(/-/, "\\-", text)
            return text
        }
        # "--on-warning TEXT:{continue,cancel}" shows its answers; a positional such as
        # "NAME TEXT REQUIRED" is its name alone and "ROW TEXT ... REQUIRED" is "ROW...", as in
        # the usage line. Answers that hold ", " themselves (font faces) would make an
        # unreadable tag: they are listed one a line under the description instead.
        function term(text,    name, rest, out, positional, list) {
            name = text; sub(/ .*/, "", name)
            rest = substr(text, length(name) + 2)
            positional = name !~ /^-/ && section != "Subcommands:"
            out = (positional ? "\\fI" : "\\fB") roff(name) "\\fR"
            sub(/ ?REQUIRED$/, "", rest)
            if (sub(/ \.\.\.$/, "", rest)) out = out "\\fI...\\fR"
            if (rest ~ /^TEXT:\{.*\}$/) {
                list = substr(rest, 7, length(rest) - 7)
                rest = "{" list "}"
                if (list ~ /, /) {
                    gsub(/, /, "\001", list); gsub(/,/, "\n.br\n", list); gsub(/\001/, ", ", list)
                    answers = roff(list); rest = "TEXT"
                }
            }
            if (rest != "" && !(positional && rest == "TEXT")) out = out " \\fI" roff(rest) "\\fR"
            return out
        }
        function flush(    tag) {
            if (pending != "" && pending !~ /^-h,--help/) {
                tag = term(pending)
                print ".TP\n" tag "\n" roff(text) (answers != "" ? ", one of:\n.br\n" answers : "")
            }
            pending = ""; text = ""; answers = ""
        }
        NR == 1 { description = $0; next }
        /^Usage: / {
            sub(/^Usage: /, "")
            if (from != "" && index($0 " ", from " ") == 1)
                $0 = to substr($0, length(from) + 1)
            print ".SS \"" roff($0) "\"\n" roff(description); next }
        /^[A-Z][a-z ]*:$/ { flush(); section = $0; next }
        /^$/ { flush(); next }
        /^  [^ ]/ {
            flush()
            pending = substr($0, 3, 28); sub(/ +$/, "", pending)
            if (length($0) > 30) text = substr($0, 31)
            if (length(pending) == 28 && substr($0, 30, 1) != " ") { pending = substr($0, 3); text = "" }
            next
        }
        /^ +[^ ]/ { sub(/^ +/, ""); text = (text == "" ? $0 : text " " $0) }
        END { flush() }
    '
}

{
    echo "[COMMANDS]"
    printf '%s\n' "Every command also takes \\fB\\-h\\fR, \\fB\\-\\-help\\fR to print its own help."
    for command in $commands; do
        help=$("$binary" "$command" --help)
        to_roff <<<"$help"
        mapfile -t names < <(positionals <<<"$help" | cut -f1)
        mapfile -t placeholders < <(positionals <<<"$help" | cut -f2)
        for subcommand in $(subcommands <<<"$help"); do
            "$binary" "$command" "${placeholders[@]}" "$subcommand" --help |
                to_roff "loomcrest $command $subcommand" \
                    "loomcrest $command ${names[*]} $subcommand"
        done
    done
} >"$output.tmp"
mv "$output.tmp" "$output"
