#!/usr/bin/env bash
# Times whole scans of synthetic sites served by nginx on 127.0.0.1, in one run on the same
# sites: `wget --spider -r` for comparison, then `loomcrest scan` with the default settings,
# with --connections 4, and with --connections 4 --fetch-once. For each it prints the pages
# a second, the requests nginx logged, the peak memory and the speed relative to wget's.
# Last, the default scan again with --explain, whose peak memory should not grow with the
# file it streams.
# Usage: bench/scan_bench.sh [PAGES...]   (default: 10000 100000)
set -euo pipefail
cd "$(dirname "$0")/.."

# nginx and wget are needed by this benchmark only, not by Loomcrest.
source bench/nginx_site.sh
install_bench_tools "nginx wget /usr/bin/time python3 bc" "nginx-light wget time python3 bc"
scripts/install-deps.sh
cmake -S . -B build/bench -DCMAKE_BUILD_TYPE=Release -DLOOMCREST_BUILD_TESTS=OFF \
    -DLOOMCREST_BUILD_GUI=OFF >/dev/null
cmake --build build/bench -j"$(nproc)" --target loomcrest >/dev/null
loomcrest="$PWD/build/bench/loomcrest"

make_bench_folder on

# Empties nginx's access log; nginx reopens it on SIGUSR1. Files written before (the site, the
# last scan's sitemaps) go to disk first, so that their writing back is not timed with the run.
reset_log() {
    sync
    : > "$work/nginx/logs/access.log"
    kill -USR1 "$nginx_pid"
    sleep 0.2
}
logged_requests() {
    wc -l < "$work/nginx/logs/access.log"
}

printf '%-8s %-24s %8s %8s %9s %9s %8s %8s\n' \
    "pages" "mode" "seconds" "pages/s" "requests" "req/page" "peak MB" "x wget"
declare -A seconds_per_page
for count in ${@:-10000 100000}; do
    rm -rf "$work/site"
    python3 bench/make_site.py "$work/site" "$count"
    start_bench_server

    reset_log
    start=$(date +%s.%N)
    (cd "$work" && rm -rf wget && mkdir wget && cd wget &&
        wget -q --spider -r -l inf --no-parent -e robots=off "http://127.0.0.1:$port/" \
            -o /dev/null || true)
    wget_elapsed=$(echo "$(date +%s.%N) - $start" | bc)
    wget_requests=$(logged_requests)

    for mode in "defaults" "--connections 4" "--connections 4 --fetch-once on"; do
        rm -rf "$work/home" && mkdir -p "$work/home"
        HOME="$work/home" "$loomcrest" add Bench "127.0.0.1:$port/" >/dev/null
        options=()
        [ "$mode" != "defaults" ] && read -r -a options <<< "$mode"
        reset_log
        HOME="$work/home" /usr/bin/time -f "%e %M" -o "$work/time" \
            "$loomcrest" scan Bench "${options[@]}" > "$work/summary" 2>"$work/errors" || {
            echo "scan failed:" >&2
            cat "$work/errors" >&2
            exit 1
        }
        read -r elapsed peak_kb < "$work/time"
        found=$(sed -n 's/^Pages found: //p' "$work/summary")
        requests=$(logged_requests)
        if [ "$mode" = "defaults" ]; then
            printf '%-8s %-24s %8.2f %8.0f %9d %9.2f %8s %8s\n' "$found" "wget --spider" \
                "$wget_elapsed" "$(echo "$found / $wget_elapsed" | bc -l)" "$wget_requests" \
                "$(echo "$wget_requests / $found" | bc -l)" "-" "1.00"
        fi
        seconds_per_page["$count $mode"]=$(echo "scale=9; $elapsed / $found" | bc)
        printf '%-8s %-24s %8.2f %8.0f %9d %9.2f %8.1f %8.2f\n' "$found" "${mode/--fetch-once on/--fetch-once}" \
            "$elapsed" "$(echo "$found / $elapsed" | bc -l)" "$requests" \
            "$(echo "$requests / $found" | bc -l)" "$(echo "$peak_kb / 1024" | bc -l)" \
            "$(echo "$wget_elapsed / $elapsed" | bc -l)"
    done
    HOME="$work/home" /usr/bin/time -f "%e %M" -o "$work/time" \
        "$loomcrest" scan Bench --explain "$work/explain.tsv" > /dev/null 2>"$work/errors" || {
        echo "scan --explain failed:" >&2
        cat "$work/errors" >&2
        exit 1
    }
    read -r explain_elapsed explain_peak_kb < "$work/time"
    printf '         with --explain: %7.2f s, peak memory %5.1f MB, %d lines explained\n' \
        "$explain_elapsed" "$(echo "$explain_peak_kb / 1024" | bc -l)" \
        "$(($(wc -l < "$work/explain.tsv") - 1))"
done

# How the time per page grows from the smallest site to the largest, in every mode.
sizes=(${@:-10000 100000})
if [ ${#sizes[@]} -ge 2 ]; then
    small=${sizes[0]}
    large=${sizes[-1]}
    for mode in "defaults" "--connections 4" "--connections 4 --fetch-once on"; do
        printf 'time per page at %s / at %s, %s: %.2f\n' "$large" "$small" "${mode/ on/}" \
            "$(echo "${seconds_per_page["$large $mode"]} / ${seconds_per_page["$small $mode"]}" | bc -l)"
    done
fi
