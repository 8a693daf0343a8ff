# shellcheck shell=bash
# Sourced by the benchmarks: installs the tools they need, makes the temporary folder $work
# (removed on exit) and serves $work/site with nginx on 127.0.0.1:$port.

# install_bench_tools "TOOL..." "PACKAGE...": installs the packages when a tool is missing.
install_bench_tools() {
    local need=() tool
    for tool in $1; do
        command -v "$tool" >/dev/null 2>&1 || need+=("$tool")
    done
    if [ ${#need[@]} -gt 0 ]; then
        local sudo=()
        [ "$(id -u)" -ne 0 ] && sudo=(sudo)
        "${sudo[@]}" apt-get update -qq
        # shellcheck disable=SC2086  # one word a package
        DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq $2
    fi
}

# make_bench_folder on|off: makes $work and writes nginx's configuration for $work/site on a
# random $port; with "on", requests are logged to $work/nginx/logs/access.log.
make_bench_folder() {
    work="$(mktemp -d)"
    chmod 755 "$work"  # nginx's workers may run as another user
    nginx_pid=""
    trap 'stop_bench_server' EXIT
    port=$((20000 + RANDOM % 20000))
    mkdir -p "$work/nginx/logs"
    local access_log=off
    [ "$1" = on ] && access_log="$work/nginx/logs/access.log"
    cat > "$work/nginx/nginx.conf" <<CONF
worker_processes 1;
error_log $work/nginx/logs/error.log;
pid $work/nginx/nginx.pid;
events { worker_connections 256; }
http {
    access_log $access_log;
    keepalive_requests 1000000;
    default_type text/html;
    types { text/html html; text/plain txt; }
    server {
        listen 127.0.0.1:$port;
        root $work/site;
    }
}
CONF
}

# Starts nginx unless it runs already.
start_bench_server() {
    if [ -z "$nginx_pid" ]; then
        nginx -c "$work/nginx/nginx.conf" -p "$work/nginx" -g 'daemon off;' &
        nginx_pid=$!
        sleep 0.5
    fi
}

stop_bench_server() {
    [ -n "$nginx_pid" ] && kill "$nginx_pid" 2>/dev/null || true
    rm -rf "$work"
}
