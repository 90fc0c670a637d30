#!/usr/bin/env bash
# Runs the feed server behind packaging/nginx/nimbara-feed.conf on loopback against the demo and checks what a
# shared cache is for: readers of every kind get the body, and the feed server and its source hear of them once.
# Needs nginx, curl and wrk. Usage: packaging/nginx/check.sh BUILD-FOLDER [SECONDS]
set -euo pipefail

build=$(realpath "${1:?usage: check.sh BUILD-FOLDER [SECONDS]}")
seconds=${2:-70}  # a period of the earthquakes and a little more
here=$(realpath "$(dirname "$0")")
work=$(mktemp -d)
origin_port=18290 feed_port=18291 cache_port=18292
feed="http://127.0.0.1:$cache_port/api/feed.php?f=quakes"
export XDG_CACHE_HOME=$work/cache XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data

started=()
stop() {
  for pid in "${started[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait
  rm -rf "$work"
}
trap stop EXIT

fail() {
  echo "check: $1" >&2
  exit 1
}
expect() {  # NAME ACTUAL WANTED
  [ "$2" = "$3" ] || fail "$1: $2 instead of $3"
  echo "$1: $2"
}
answered() {  # URL: waits until somebody is there
  for _ in $(seq 50); do
    curl -s -o /dev/null "$1" && return
    sleep 0.1
  done
  fail "nobody answers at $1"
}
lines() { if [ -f "$1" ]; then wc -l < "$1"; else echo 0; fi; }
status() { curl -s -o /dev/null -w '%{http_code}' "$@"; }
header() {  # NAME CURL-ARGUMENTS: the value
  local name=$1
  shift
  curl -s -o /dev/null -D - "$@" | tr -d '\r' | sed -n "s/^$name: //Ip"
}

"$build/bin/nimbara" demo > "$work/demo" &
started+=($!)
until [ -s "$work/demo" ]; do sleep 0.1; done

# One nginx is the cache and, before the demo, the counter of what reaches the source.
sed -e "s|listen 80 default_server.*;|listen 127.0.0.1:$cache_port;|" -e "s|/var/cache/nginx/nimbara-feed|$work/nginx|" \
    -e "s|127.0.0.1:8088|127.0.0.1:$feed_port|" "$here/nimbara-feed.conf" > "$work/nimbara-feed.conf"
[ "$(id -u)" -ne 0 ] || user="user root;"
cat > "$work/nginx.conf" <<END
daemon off;
${user-}
pid $work/nginx.pid;
error_log $work/error.log warn;
worker_processes 1;
events { worker_connections 2048; }
http {
    log_format reached '\$upstream_cache_status \$status \$request_uri';
    access_log $work/readers.log reached;
    server {
        listen 127.0.0.1:$origin_port;
        access_log $work/origin.log;
        location / { proxy_pass $(cat "$work/demo"); }
    }
    include $work/nimbara-feed.conf;
}
END
nginx -t -q -e "$work/error.log" -c "$work/nginx.conf"
nginx -e "$work/error.log" -c "$work/nginx.conf" &
started+=($!)
"$build/bin/nimbara" feed-server --listen 127.0.0.1:$feed_port --services "http://127.0.0.1:$origin_port" > /dev/null &
feed_server=$!
started+=("$feed_server")
answered "http://127.0.0.1:$feed_port/"
answered "$feed"

first=$(date +%s)
report=$(wrk -t1 -c50 -d3s "$feed")
echo "$report" | grep -E 'requests in|Requests/sec|Non-2xx' || true
echo "$report" | grep -q 'Non-2xx' && fail "some readers got no body"
tag=$(header ETag "$feed")
expect "unchanged for who has it" "$(status -H "If-None-Match: $tag" "$feed")" 304
expect "head" "$(status -I "$feed")" 200
expect "plain form" "$(header Content-Encoding "$feed")" ""
for spelling in gzip 'gzip, deflate, br' 'br;q=1.0, gzip;q=0.8' 'GZIP'; do
  expect "gzip for '$spelling'" "$(header Content-Encoding -H "Accept-Encoding: $spelling" "$feed")" gzip
done
expect "plain for who refuses gzip" "$(header Content-Encoding -H 'Accept-Encoding: gzip;q=0, identity' "$feed")" ""
expect "unknown feed" "$(status "http://127.0.0.1:$cache_port/api/feed.php?f=nothing")" 400
expect "no such page" "$(status "http://127.0.0.1:$cache_port/else")" 404
expect "written to" "$(status -X POST -d x "$feed")" 403
while [ $(($(date +%s) - first)) -lt "$seconds" ]; do
  wrk -t1 -c20 -d1s "$feed" > /dev/null
  sleep 4
done
readers=$(lines "$work/readers.log")
passed=$(grep -cE '^(MISS|EXPIRED|REVALIDATED|STALE|UPDATING) ' "$work/readers.log" || true)
forwarded=$(grep -cE '^(MISS|EXPIRED|REVALIDATED) ' "$work/readers.log" || true)
periods=$((seconds / 60 + 1))
echo "$readers requests of readers, $passed of them around a renewal, $forwarded waited for the feed server"
[ "$(lines "$work/origin.log")" -le "$periods" ] || fail "the source was asked $(lines "$work/origin.log") times"
echo "the source was asked $(lines "$work/origin.log") times in $seconds s"

kill -9 "$(pgrep -P "$feed_server")"
sleep 61
expect "the last good body without a feed server" "$(status "$feed")" 200
echo "check: all is well"
