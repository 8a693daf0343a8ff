#!/usr/bin/env bash
# Times `loomcrest scan` on synthetic sites of 1,000 and 10,000 pages served by nginx on
# 127.0.0.1, with its peak memory, and `wget --spider` on the same sites for comparison;
# then the same scan with --explain, whose peak memory should not grow with the file.
# Usage: bench/scan_bench.sh [PAGES...]   (default: 1000 10000)
set -euo pipefail
cd "$(dirname "$0")/.."

need=()
for tool in nginx wget /usr/bin/time python3 bc; do
    command -v "$tool" >/dev/null 2>&1 || need+=("$tool")
done
if [ ${#need[@]} -gt 0 ]; then
    sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    "${sudo[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq nginx-light wget time python3 bc
fi
scripts/install-deps.sh
cmake -S . -B build/bench -DCMAKE_BUILD_TYPE=Release -DLOOMCREST_BUILD_TESTS=OFF >/dev/null
cmake --build build/bench -j"$(nproc)" --target loomcrest >/dev/null
loomcrest="$PWD/build/bench/loomcrest"

work="$(mktemp -d)"
chmod 755 "$work"  # nginx's workers may run as another user
nginx_pid=""
cleanup() {
    [ -n "$nginx_pid" ] && kill "$nginx_pid" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

port=$((20000 + RANDOM % 20000))
mkdir -p "$work/nginx/logs"
cat > "$work/nginx/nginx.conf" <<CONF
worker_processes 1;
error_log $work/nginx/logs/error.log;
pid $work/nginx/nginx.pid;
events { worker_connections 256; }
http {
    access_log off;
    keepalive_requests 100000;
    default_type text/html;
    types { text/html html; text/plain txt; }
    server {
        listen 127.0.0.1:$port;
        root $work/site;
    }
}
CONF

declare -A seconds_per_page
for pages in "${@:-1000 10000}"; do
    for count in $pages; do
        rm -rf "$work/site" "$work/home"
        python3 bench/make_site.py "$work/site" "$count"
        if [ -z "$nginx_pid" ]; then
            nginx -c "$work/nginx/nginx.conf" -p "$work/nginx" -g 'daemon off;' &
            nginx_pid=$!
            sleep 0.5
        fi
        mkdir -p "$work/home"
        HOME="$work/home" "$loomcrest" add Bench "127.0.0.1:$port/" >/dev/null
        HOME="$work/home" /usr/bin/time -f "%e %M" -o "$work/time" \
            "$loomcrest" scan Bench > "$work/summary" 2>"$work/errors" || {
            echo "scan failed:" >&2
            cat "$work/errors" >&2
            exit 1
        }
        read -r elapsed peak_kb < "$work/time"
        found=$(sed -n 's/^Pages found: //p' "$work/summary")
        start=$(date +%s.%N)
        (cd "$work" && wget -q --spider -r -l inf --no-parent "http://127.0.0.1:$port/" \
            -o /dev/null || true)
        wget_elapsed=$(echo "$(date +%s.%N) - $start" | bc)
        seconds_per_page[$count]=$(echo "scale=6; $elapsed / $found" | bc)
        printf '%6d pages: %7.2f s, %6.0f pages/s, peak memory %5.1f MB; wget --spider %6.2f s (loomcrest/wget %.2f)\n' \
            "$found" "$elapsed" "$(echo "$found / $elapsed" | bc -l)" \
            "$(echo "$peak_kb / 1024" | bc -l)" "$wget_elapsed" \
            "$(echo "$elapsed / $wget_elapsed" | bc -l)"
        # The same scan explaining every link it leaves out: the file is streamed, so the
        # peak memory should stay where it was however many lines it gets.
        HOME="$work/home" /usr/bin/time -f "%e %M" -o "$work/time" \
            "$loomcrest" scan Bench --explain "$work/explain.tsv" > /dev/null 2>"$work/errors" || {
            echo "scan --explain failed:" >&2
            cat "$work/errors" >&2
            exit 1
        }
        read -r explain_elapsed explain_peak_kb < "$work/time"
        printf '        with --explain: %7.2f s, peak memory %5.1f MB, %d lines explained\n' \
            "$explain_elapsed" "$(echo "$explain_peak_kb / 1024" | bc -l)" \
            "$(($(wc -l < "$work/explain.tsv") - 1))"
    done
done
if [ -n "${seconds_per_page[1000]:-}" ] && [ -n "${seconds_per_page[10000]:-}" ]; then
    printf 'time per page at 10,000 / at 1,000: %.2f\n' \
        "$(echo "${seconds_per_page[10000]} / ${seconds_per_page[1000]}" | bc -l)"
fi
