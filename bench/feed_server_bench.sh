#!/usr/bin/env bash
# What one feed server holds by itself, beside nginx with one worker serving the same bytes as a file, in turn on
# loopback. Needs nginx, curl and wrk. Usage: bench/feed_server_bench.sh BUILD-FOLDER [ROUNDS]
set -euo pipefail

build=$(realpath "${1:?usage: feed_server_bench.sh BUILD-FOLDER [ROUNDS]}")
rounds=${2:-3}
work=$(mktemp -d)
feed_port=18293 file_port=18294
feed="http://127.0.0.1:$feed_port/api/feed.php?f=quakes"
file="http://127.0.0.1:$file_port/quakes"
export XDG_CACHE_HOME=$work/cache XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data

started=()
stop() {
  for pid in "${started[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait
  rm -rf "$work"
}
trap stop EXIT

"$build/bin/nimbara" demo -- nimbara feed-server --listen 127.0.0.1:$feed_port > /dev/null &
started+=($!)
until curl -sf -o "$work/quakes" "$feed"; do sleep 0.1; done
curl -sf -H 'Accept-Encoding: gzip' -o "$work/quakes.gz" "$feed"
[ "$(id -u)" -ne 0 ] || user="user root;"
cat > "$work/nginx.conf" <<END
daemon off;
${user-}
pid $work/nginx.pid;
error_log $work/error.log warn;
worker_processes 1;
events { worker_connections 2048; }
http {
    access_log off;
    sendfile on;
    keepalive_requests 1000000;
    server {
        listen 127.0.0.1:$file_port;
        root $work;
        default_type application/json;
        gzip_static on;
    }
}
END
nginx -e "$work/error.log" -c "$work/nginx.conf" &
started+=($!)
until curl -sf -o /dev/null "$file"; do sleep 0.1; done

grep -m1 'model name' /proc/cpuinfo
stat -c '%n: %s bytes' "$work/quakes" "$work/quakes.gz" | sed "s|$work/||"
tag=$(curl -s -o /dev/null -D - "$feed" | tr -d '\r' | sed -n 's/^ETag: //Ip')
file_tag=$(curl -s -o /dev/null -D - "$file" | tr -d '\r' | sed -n 's/^ETag: //Ip')
rate() {  # NAME CONNECTIONS WRK-ARGUMENTS
  local name=$1 connections=$2
  shift 2
  wrk -t1 -c"$connections" -d3s --latency "$@" |
    awk -v name="$name, $connections connections" \
      '/99%/ {late = $2} /Requests\/sec/ {rate = $2} /Non-2xx/ && !/304/ {other = $0}
       END {printf "%-46s %8.0f requests/s, 99 %% within %s%s\n", name, rate, late, other}'
}
for _ in $(seq "$rounds"); do
  for connections in 16 256; do
    rate "feed server, compressed" $connections -H 'Accept-Encoding: gzip' "$feed"
    rate "nginx, compressed file" $connections -H 'Accept-Encoding: gzip' "$file"
    rate "feed server, plain" $connections "$feed"
    rate "nginx, plain file" $connections "$file"
    rate "feed server, unchanged" $connections -H "If-None-Match: $tag" "$feed"
    rate "nginx, unchanged" $connections -H "If-None-Match: $file_tag" "$file"
  done
done
