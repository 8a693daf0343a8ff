#!/usr/bin/env bash
# Times the sitemap editors through the command line on the scan of a generated site (about
# 40 links a page, served by nginx on 127.0.0.1): title and address edits, a style change,
# deletions (a link, a page title whose next link number is 2,000 away, one with a re-pack in
# each table layout), and an XML edit at 100,000 entries. Each operation starts from the
# files the scan wrote. Then the window's own timers: a click selecting a link and an edit
# showing in the preview, on the 10,000-page scan.
# Usage: bench/editor_bench.sh [PAGES...]   (default: 1000 10000)
# LOOMCREST=path times another build of the command line (and the window benchmark built beside
# it); LOOMCREST_BENCH_WINDOW=0 skips the window.
set -euo pipefail
cd "$(dirname "$0")/.."

source bench/nginx_site.sh
install_bench_tools "nginx /usr/bin/time python3 bc" "nginx-light time python3 bc"
window="${LOOMCREST_BENCH_WINDOW:-1}"
if [ -z "${LOOMCREST:-}" ]; then
    scripts/install-deps.sh
    gui=OFF
    [ "$window" = 1 ] && gui=ON
    cmake -S . -B build/bench -DCMAKE_BUILD_TYPE=Release -DLOOMCREST_BUILD_GUI="$gui" \
        -DLOOMCREST_BUILD_BENCHMARKS="$gui" >/dev/null
    targets=(loomcrest)
    [ "$window" = 1 ] && targets+=(loomcrest_window_bench)
    cmake --build build/bench -j"$(nproc)" --target "${targets[@]}" >/dev/null
fi
loomcrest="${LOOMCREST:-$PWD/build/bench/loomcrest}"

make_bench_folder off

# Files derived from the scan: a pages-only layout with the title lines after one page title
# removed up to 2,000 link numbers on, and an XML sitemap of 100,000 entries.
prepare() {
    python3 - "$1" "$2" <<'PY'
import re, sys
folder, derived = sys.argv[1], sys.argv[2]
text = open(f"{folder}/sitemap1cpo.html", encoding="utf-8").read()
item = re.compile(r'\n\n\t\t\t<div class="zplPageTitle"><a href="[^"\n]*---LINKID:(\d+)---">'
                  r'[^\n]*</div>\n<div class="clearer">&nbsp;</div>')
items = list(item.finditer(text))
chosen = items[len(items) // 10]
first = int(chosen.group(1))
gone = [m for m in items if first < int(m.group(1)) <= first + 2000]
kept = text
for m in reversed(gone):
    kept = kept[:m.start()] + kept[m.end():]
open(f"{derived}/gap1cpo.html", "w", encoding="utf-8").write(kept)
print(len(items) // 10 + 1)

xml = open(f"{folder}/sitemap.xml", encoding="utf-8").read()
entries = re.findall(r"\t<url>\n.*?\t</url>\n", xml, re.S)
start = xml.index(entries[0])
end = xml.rindex(entries[-1]) + len(entries[-1])
more = [entries[i % len(entries)].replace("</loc>", f"?copy={i}</loc>")
        for i in range(100000 - len(entries))]
open(f"{derived}/sitemap.xml", "w", encoding="utf-8").write(
    xml[:end] + "".join(more) + xml[end:])
PY
}

declare -A results
operations=()
# time_op LABEL [SOURCE:FILE]... -- ARGUMENTS...: copies each SOURCE over the site's FILE, then
# times `loomcrest ARGUMENTS`; the best of $runs runs, in wall-clock and CPU (user + system)
# seconds, so that other work on the machine blurs the figures less.
runs="${LOOMCREST_BENCH_RUNS:-3}"
time_op() {
    local label="$1"
    shift
    local restore=()
    while [ "$1" != "--" ]; do restore+=("$1"); shift; done
    shift
    local best_wall="" best_cpu="" peak_kb=0
    for _ in $(seq "$runs"); do
        for pair in "${restore[@]}"; do
            cp "${pair%%:*}" "$folder/${pair##*:}"
        done
        HOME="$work/home" /usr/bin/time -f "%e %U %S %M" -o "$work/time" \
            "$loomcrest" "$@" >/dev/null 2>"$work/errors" || {
            echo "failed: loomcrest $*" >&2
            cat "$work/errors" >&2
            exit 1
        }
        local wall user system kb
        read -r wall user system kb < "$work/time"
        local cpu
        cpu=$(echo "$user + $system" | bc -l)
        if [ -z "$best_wall" ] || [ "$(echo "$wall < $best_wall" | bc -l)" = 1 ]; then
            best_wall=$wall
        fi
        if [ -z "$best_cpu" ] || [ "$(echo "$cpu < $best_cpu" | bc -l)" = 1 ]; then
            best_cpu=$cpu
        fi
        [ "$kb" -gt "$peak_kb" ] && peak_kb=$kb
    done
    [ -n "${results[$label]+x}" ] || operations+=("$label")
    results[$label]+=$(printf ' | %.2f s (CPU %.2f s), %.0f MB' "$best_wall" "$best_cpu" \
        "$(echo "$peak_kb / 1024" | bc -l)")
}

sizes=("$@")
[ ${#sizes[@]} -gt 0 ] || sizes=(1000 10000)
columns=()
for pages in "${sizes[@]}"; do
    rm -rf "$work/site" "$work/home"
    python3 bench/make_site.py "$work/site" "$pages"
    start_bench_server
    mkdir -p "$work/home"
    HOME="$work/home" "$loomcrest" add Big "127.0.0.1:$port/" >/dev/null
    HOME="$work/home" "$loomcrest" scan Big >/dev/null 2>&1
    folder="$work/home/Library/Application Support/Quillmoor/Loomcrest/Big"
    pristine="$work/pristine"
    derived="$work/derived"
    rm -rf "$pristine" "$derived"
    cp -a "$folder" "$pristine"
    mkdir -p "$derived"
    gap_line=$(prepare "$pristine" "$derived")
    size=$(du -m "$folder/sitemap3c.html" | cut -f1)
    columns+=("$pages pages (3c: $size MB)")
    edit_line=$((pages / 2))
    link_line=$((pages * 20))

    p="$pristine"
    time_op "3c edit LINE --title" "$p/sitemap3c.html:sitemap3c.html" -- \
        html Big 3c edit "$edit_line" --title Edited
    time_op "3c edit LINE --link" "$p/sitemap3c.html:sitemap3c.html" -- \
        html Big 3c edit "$edit_line" --link http://127.0.0.1/edited.html
    time_op "3c style --pt-bold off" "$p/sitemap3c.html:sitemap3c.html" -- \
        html Big 3c style --pt-bold off
    time_op "3c lines" -- html Big 3c lines
    time_op "1c delete (a link)" "$p/sitemap1c.html:sitemap1c.html" -- \
        html Big 1c delete "$link_line"
    time_op "1cpo delete (a title, next number 2,000 on)" "$derived/gap1cpo.html:sitemap1cpo.html" -- \
        html Big 1cpo delete "$gap_line"
    for layout in 3c 2c; do
        time_op "$layout delete (a link, re-pack)" "$p/sitemap$layout.html:sitemap$layout.html" -- \
            html Big "$layout" delete "$link_line"
    done
    for layout in 3cpo 2cpo; do
        time_op "$layout delete (a title, re-pack)" "$p/sitemap$layout.html:sitemap$layout.html" \
            -- html Big "$layout" delete "$edit_line"
    done
    time_op "1cpo delete (a title)" "$p/sitemap1cpo.html:sitemap1cpo.html" -- \
        html Big 1cpo delete "$edit_line"
    time_op "xml set (100,000 entries)" "$derived/sitemap.xml:sitemap.xml" -- \
        xml Big set 50000 priority 0.3
    cp -a "$pristine/." "$folder/"
done

printf '| Operation'
for column in "${columns[@]}"; do printf ' | %s' "$column"; done
printf ' |\n|---'
for _ in "${columns[@]}"; do printf '|---'; done
printf '|\n'
for label in "${operations[@]}"; do
    printf '| `%s`%s |\n' "$label" "${results[$label]}"
done

window_bench="$(dirname "$loomcrest")/bench/loomcrest_window_bench"
[ -x "$window_bench" ] || window_bench="$(dirname "$loomcrest")/loomcrest_window_bench"
if [ "$window" = 1 ] && [ -x "$window_bench" ] && command -v xvfb-run >/dev/null; then
    # Loading a big layout into the preview takes minutes on a busy machine.
    LOOMCREST_BENCH_HOME="$work/home" LOOMCREST_BENCH_SITE=Big QT_QPA_PLATFORM=xcb \
        QTEST_FUNCTION_TIMEOUT=3600000 \
        QTWEBENGINE_CHROMIUM_FLAGS=--disable-gpu \
        dbus-run-session -- xvfb-run -a -s "-screen 0 1280x1024x24" \
        "$window_bench" 2>&1 |
        sed -n 's/.*window timing: //p'
fi
echo "load average at the end: $(cut -d" " -f1-3 /proc/loadavg)"
