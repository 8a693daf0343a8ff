#!/usr/bin/env bash
# Times whole scans of synthetic sites served by nginx on 127.0.0.1, in one run on the same
# sites: `wget --spider -r` for comparison, then `loomcrest scan` with the default settings,
# with --connections 4, and with --connections 4 --fetch-once. Each is run ROUNDS times
# (default 3), taking turns, so that the machine's changes of pace touch all of them alike.
# For each it prints the median time with the fastest and slowest run, the pages a second
# and the speed relative to wget's (both from the medians), the requests nginx logged and
# the highest peak memory of its runs. Last, the default scan again with --explain, whose
# peak memory should not grow with the file it streams.
# Usage: ROUNDS=3 bench/scan_bench.sh [PAGES...]   (default: 10000 100000)
set -euo pipefail
cd "$(dirname "$0")/.."
rounds=${ROUNDS:-3}

# nginx and wget are needed by this benchmark only, not by Loomcrest.
source bench/nginx_site.sh
install_bench_tools "nginx wget /usr/bin/time python3 bc" "nginx-light wget time python3 bc"
scripts/install-deps.sh
cmake -S . -B build/bench -DCMAKE_BUILD_TYPE=Release -DLOOMCREST_BUILD_TESTS=OFF \
    -DLOOMCREST_BUILD_GUI=OFF >/dev/null
cmake --build build/bench -j"$(nproc)" --target loomcrest >/dev/null
loomcrest="$PWD/build/bench/loomcrest"

make_bench_folder on
modes=("wget" "defaults" "--connections 4" "--connections 4 --fetch-once on")

# Empties nginx's access log; nginx reopens it on SIGUSR1. Files written before (the site, the
# last scan's sitemaps) go to disk first, so that their writing back is not timed with the run.
reset_log() {
    sync
    : > "$work/nginx/logs/access.log"
    kill -USR1 "$nginx_pid"
    sleep 0.2
}

# Runs one mode once; appends "seconds peak_kb requests pages" to $work/runs/<mode number>.
run_mode() {
    local number=$1 mode=${modes[$1]} options=()
    reset_log
    if [ "$mode" = "wget" ]; then
        (cd "$work" && rm -rf wget && mkdir wget && cd wget &&
            /usr/bin/time -f "%e %M" -o "$work/time" wget -q --spider -r -l inf --no-parent \
                -e robots=off "http://127.0.0.1:$port/" -o /dev/null || true)
        # time's last line: wget ends with a failure status, as the site has missing pages.
        echo "$(tail -1 "$work/time") $(wc -l < "$work/nginx/logs/access.log") -" \
            >> "$work/runs/$number"
        return
    fi
    rm -rf "$work/home" && mkdir -p "$work/home"
    HOME="$work/home" "$loomcrest" add Bench "127.0.0.1:$port/" >/dev/null
    [ "$mode" != "defaults" ] && read -r -a options <<< "$mode"
    reset_log
    HOME="$work/home" /usr/bin/time -f "%e %M" -o "$work/time" \
        "$loomcrest" scan Bench "${options[@]}" > "$work/summary" 2>"$work/errors" || {
        echo "scan failed:" >&2
        cat "$work/errors" >&2
        exit 1
    }
    local elapsed peak_kb
    read -r elapsed peak_kb < "$work/time"
    echo "$elapsed $peak_kb $(wc -l < "$work/nginx/logs/access.log")" \
        "$(sed -n 's/^Pages found: //p' "$work/summary")" >> "$work/runs/$number"
}

# The median, lowest and highest of the first column of a runs file.
median_of() { cut -d' ' -f1 "$1" | sort -g | awk '{v[NR]=$1} END {print v[int((NR+1)/2)]}'; }
lowest_of() { cut -d' ' -f1 "$1" | sort -g | head -1; }
highest_of() { cut -d' ' -f1 "$1" | sort -g | tail -1; }

printf '%-8s %-28s %8s %15s %8s %9s %9s %8s %8s\n' "pages" "mode" "median s" "fastest-slowest" \
    "pages/s" "requests" "req/page" "peak MB" "x wget"
declare -A seconds_per_page
for count in ${@:-10000 100000}; do
    rm -rf "$work/site" "$work/runs" && mkdir -p "$work/runs"
    python3 bench/make_site.py "$work/site" "$count"
    start_bench_server
    for ((round = 1; round <= rounds; round++)); do
        for number in "${!modes[@]}"; do
            run_mode "$number"
        done
    done

    found=$(tail -1 "$work/runs/1" | cut -d' ' -f4)
    wget_median=$(median_of "$work/runs/0")
    for number in "${!modes[@]}"; do
        runs="$work/runs/$number"
        median=$(median_of "$runs")
        requests=$(tail -1 "$runs" | cut -d' ' -f3)
        peak=$(cut -d' ' -f2 "$runs" | sort -n | tail -1 | awk '{printf "%.1f", $1 / 1024}')
        seconds_per_page["$count $number"]=$(echo "scale=9; $median / $found" | bc)
        printf '%-8s %-28s %8.2f %7.2f-%-7.2f %8.0f %9d %9.2f %8s %8.2f\n' "$found" \
            "$(echo "${modes[$number]/wget/wget --spider}" | sed 's/ on$//')" "$median" \
            "$(lowest_of "$runs")" "$(highest_of "$runs")" "$(echo "$found / $median" | bc -l)" \
            "$requests" "$(echo "$requests / $found" | bc -l)" "$peak" \
            "$(echo "$wget_median / $median" | bc -l)"
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
    for number in 1 2 3; do
        printf 'time per page at %s / at %s, %s: %.2f\n' "$large" "$small" \
            "$(echo "${modes[$number]}" | sed 's/ on$//')" \
            "$(echo "${seconds_per_page["$large $number"]} / ${seconds_per_page["$small $number"]}" | bc -l)"
    done
fi
