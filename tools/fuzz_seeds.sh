#!/usr/bin/env bash
# Makes fuzz/seeds anew for the parsers of services: what the demo answers for them at one moment, so that every seed is
# our own and small. Seeds that were written by hand stay.
#
#   tools/fuzz_seeds.sh BUILD
set -euo pipefail
cd "$(dirname "$0")/.."
demo=${1:?usage: fuzz_seeds.sh BUILD}/bin/nimbara-demo
moment=2026-11-21T09:20:00Z
exec {answers}< <(exec "$demo" 0 "$moment" scene=world < <(sleep 60))
read -r -t 20 base <&"$answers"

# Of a long list in JSON the first entries, so that the document stays whole.
shorten() { # FILE
  [ "$(stat --format=%s "$1")" -gt 12000 ] || return 0
  python3 - "$1" <<'PYTHON'
import json, sys
def short(value):
    if isinstance(value, dict):
        return {key: short(each) for key, each in value.items()}
    return [short(each) for each in value[:24]] if isinstance(value, list) else value
text = open(sys.argv[1]).read()
try:
    text = json.dumps(short(json.loads(text)), ensure_ascii=False, separators=(",", ":"))
except ValueError:
    pass
open(sys.argv[1], "w").write(text)
PYTHON
}

seed() { # TARGET NAME PATH [OPTION OF CURL...]
  local file=fuzz/seeds/$1/$2
  mkdir -p "fuzz/seeds/$1"
  curl --silent --fail --max-time 20 "${@:4}" "$base$3" >"$file" || { echo "fuzz_seeds: no answer for $3" >&2; rm -f "$file"; return; }
  shorten "$file"
}
place='latitude=59.91&longitude=10.75'
hours=temperature_2m,weather_code,precipitation,precipitation_probability,wind_speed_10m,wind_gusts_10m,is_day,uv_index
days=weather_code,temperature_2m_max,temperature_2m_min,sunrise,sunset,precipitation_sum
seed open_meteo demo.json "/v1/forecast?$place&timezone=auto&current=$hours&hourly=$hours&daily=$days"
seed air_quality demo.json "/v1/air-quality?$place&current=european_aqi,pm10,pm2_5&hourly=uv_index,birch_pollen,pm10"
seed bright_sky demo.json "/alerts?lat=52.52&lon=13.41"
seed cloud_lists nowcoast.xml "/geoserver/satellite/ows?service=WMS&version=1.3.0&request=GetCapabilities"
seed cloud_lists eumetview.xml "/geoserver/mumi/ows?service=WMS&version=1.3.0&request=GetCapabilities"
seed eccc demo.json "/collections/weather-alerts/items?bbox=-76,45,-75,46"
seed elements demo.txt "/api/feed.php?f=satellites&p=stations"
seed firms demo.csv "/api/area/csv/KEY/VIIRS_SNPP_NRT/-10,35,0,45/1"
seed met_alerts demo.json "/weatherapi/metalerts/2.0/current.json?lat=59.91&lon=10.75"
seed meteo_alarm demo.xml "/feeds/meteoalarm-legacy-atom-norway"
grid='latitude=60,60,57,57&longitude=178,-179,178,-179&timeformat=unixtime&forecast_hours=6'
seed model_fields four.json "/v1/forecast?$grid&hourly=temperature_2m,precipitation,pressure_msl,wind_speed_10m,wind_direction_10m"
seed nhc storms.json "/CurrentStorms.json"
seed nhc list.rss "/jtwc/rss/jtwc.rss"
seed nhc events.json "/gdacsapi/api/events/geteventlist/MAP"
storm=$(grep -oE '[a-z]{2}[0-9]{4}\.tcw' fuzz/seeds/nhc/list.rss | head -n 1)
seed nhc warning.tcw "/jtwc/products/$storm"
maps=/tropical/rest/services/tropical/NHC_tropical_weather/MapServer
seed nhc layers.json "$maps"
points=$(grep -oE '"id":[0-9]+,"name":"AT1 Forecast Points"' fuzz/seeds/nhc/layers.json | grep -oE '[0-9]+' | head -n 1)
seed nhc track.json "$maps/$points/query"
seed nowcast met.json "/weatherapi/nowcast/2.0/complete?lat=59.91&lon=10.75"
seed nws demo.json "/alerts/active?point=39.7392,-104.9903"
seed radar_lists maps.json "/rainViewer/public/weather-maps.json"
sed -i "s|\"host\":\"$base[a-zA-Z/]*\"|\"host\":\"https://service.example\"|" fuzz/seeds/radar_lists/maps.json
seed radar_lists times.json "/bosai/jmatile/data/nowc/targetTimes_N1.json"
seed radar_lists noaa.xml "/geoserver/conus/conus_bref_qcd/ows?service=WMS&version=1.3.0&request=GetCapabilities"
seed radar_lists dwd.xml "/geoserver/dwd/Niederschlagsradar/ows?service=WMS&version=1.3.0&request=GetCapabilities"
seed radar_lists forecasts.json "/bosai/jmatile/data/nowc/targetTimes_N2.json"
seed stations livedata.json "/get_livedata_info"
token="Authorization: Bearer a-$(date --utc --date="$moment" +%s)"
seed stations account.json /api/getstationsdata --header "$token"
seed stations public.json "/api/getpublicdata?lat_ne=52.6&lon_ne=13.5&lat_sw=52.4&lon_sw=13.3" --header "$token"
seed swpc index.json "/products/noaa-planetary-k-index.json"
seed swpc forecast.json "/products/noaa-planetary-k-index-forecast.json"
seed travel demo.json "/api/TravelAdvisories"
seed usgs demo.json "/earthquakes/feed/v1.0/summary/all_day.geojson"
seed usgs emsc.json "/fdsnws/event/1/query?format=json"
seed wttr demo.json "/59.91,10.75?format=j1"
seed yr_no demo.json "/weatherapi/locationforecast/2.0/complete?lat=59.91&lon=10.75"

# The demo's pictures are not compressed: smaller ones of each kind, by hand.
mkdir -p fuzz/seeds/radar_pictures
python3 - fuzz/seeds/radar_pictures <<'PYTHON'
import struct, sys, zlib
def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
def png(name, bits, colour, rows, interlaced=0, extra=b""):
    head = struct.pack(">IIBBBBB", 4, len(rows), bits, colour, 0, 0, interlaced)
    data = zlib.compress(b"".join(b"\0" + row for row in rows))
    whole = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + extra + chunk(b"IDAT", data) + chunk(b"IEND", b"")
    open(f"{sys.argv[1]}/{name}", "wb").write(whole)
rain, clear = bytes((0, 0x99, 0xcc, 0xff)), bytes(4)
png("colours.png", 8, 6, [rain * 2 + clear * 2, clear * 4])
png("bare.png", 8, 0, [bytes((0, 64, 96, 128)), bytes(4)])
png("table.png", 2, 3, [b"\x1b", b"\xe4"], 0, chunk(b"PLTE", bytes(range(12))) + chunk(b"tRNS", b"\0\xff"))
png("deep.png", 16, 2, [bytes(range(24)), bytes(24)])
point = b"VP8L\x0d\0\0\0/\0\0\0\x10\x07\x10\x11\x11\x88\x88\xfe\x07\0"
open(f"{sys.argv[1]}/point.webp", "wb").write(b"RIFF" + struct.pack("<I", 4 + len(point)) + b"WEBP" + point)
PYTHON
du -sh fuzz/seeds
