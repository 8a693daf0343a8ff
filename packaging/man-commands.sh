#!/usr/bin/env bash
# Writes a help2man include with a COMMANDS section made from each command's own --help,
# so that the manual page describes every command and option the program has.
# Usage: man-commands.sh LOOMCREST_BINARY OUTPUT
set -euo pipefail

binary=$1
output=$2

commands=$("$binary" --help | awk '/^Subcommands:/ { on = 1; next } on && /^  [a-z]/ { print $1 }')
if [ -z "$commands" ]; then
    echo "man-commands.sh: $binary --help lists no commands" >&2
    exit 1
fi

# One command's help in roff: its usage line as a subheading, its description, then each
# positional and option (but the --help every command has) as a tagged paragraph.
to_roff() {
    awk '
        function roff(text) {
            gsub(/\\/, "\\e", text); gsub(/-/, "\\-", text)
            return text
        }
        # "--on-warning TEXT:{continue,cancel}" shows its answers; a positional such as
        # "NAME TEXT REQUIRED" is its name alone, as in the usage line.
        function term(text,    parts, n, i, out, positional) {
            n = split(text, parts, " ")
            positional = parts[1] !~ /^-/
            out = (positional ? "\\fI" : "\\fB") roff(parts[1]) "\\fR"
            for (i = 2; i <= n; i++) {
                if (parts[i] == "REQUIRED" || (positional && parts[i] == "TEXT")) continue
                sub(/^TEXT:/, "", parts[i])
                out = out " \\fI" roff(parts[i]) "\\fR"
            }
            return out
        }
        function flush() {
            if (pending != "" && pending !~ /^-h,--help/) print ".TP\n" term(pending) "\n" roff(text)
            pending = ""; text = ""
        }
        NR == 1 { description = $0; next }
        /^Usage: / { sub(/^Usage: /, ""); print ".SS \"" roff($0) "\"\n" roff(description); next }
        /^[A-Z][a-z]*:$/ || /^$/ { flush(); next }
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
        "$binary" "$command" --help | to_roff
    done
} >"$output.tmp"
mv "$output.tmp" "$output"
