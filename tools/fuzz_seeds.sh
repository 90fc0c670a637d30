#!/usr/bin/env bash
# Makes fuzz/seeds anew for the parsers of services: what the demo answers for them at one moment, so that every seed is
# our own and small. Seeds that were written by hand stay.
#
#   tools/fuzz_seeds.sh BUILD
set -euo pipefail
cd "$(dirname "$0")/.."
demo=${1:?usage: fuzz_seeds.sh BUILD}/bin/nimbara-demo
exec {answers}< <(exec "$demo" 0 2026-11-21T09:20:00Z scene=world < <(sleep 60))
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

seed() { # TARGET NAME PATH
  local file=fuzz/seeds/$1/$2
  mkdir -p "fuzz/seeds/$1"
  curl --silent --fail --max-time 20 "$base$3" >"$file" || { echo "fuzz_seeds: no answer for $3" >&2; rm -f "$file"; return; }
  shorten "$file"
}
place='latitude=59.91&longitude=10.75'
hours=temperature_2m,weather_code,precipitation,precipitation_probability,wind_speed_10m,wind_gusts_10m,is_day,uv_index
days=weather_code,temperature_2m_max,temperature_2m_min,sunrise,sunset,precipitation_sum
seed open_meteo demo.json "/v1/forecast?$place&timezone=auto&current=$hours&hourly=$hours&daily=$days"
seed air_quality demo.json "/v1/air-quality?$place&current=european_aqi,pm10,pm2_5&hourly=uv_index,birch_pollen,pm10"
seed bright_sky demo.json "/alerts?lat=52.52&lon=13.41"
seed eccc demo.json "/collections/weather-alerts/items?bbox=-76,45,-75,46"
seed elements demo.txt "/api/feed.php?f=satellites&p=stations"
seed firms demo.csv "/api/area/csv/KEY/VIIRS_SNPP_NRT/-10,35,0,45/1"
seed met_alerts demo.json "/weatherapi/metalerts/2.0/current.json?lat=59.91&lon=10.75"
seed meteo_alarm demo.xml "/feeds/meteoalarm-legacy-atom-norway"
seed nhc storms.json "/CurrentStorms.json"
seed nhc list.rss "/jtwc/rss/jtwc.rss"
seed nhc events.json "/gdacsapi/api/events/geteventlist/MAP"
seed nowcast met.json "/weatherapi/nowcast/2.0/complete?lat=59.91&lon=10.75"
seed nws demo.json "/alerts/active?point=39.7392,-104.9903"
seed radar_lists maps.json "/rainViewer/public/weather-maps.json"
seed radar_lists times.json "/bosai/jmatile/data/nowc/targetTimes_N1.json"
seed stations livedata.json "/get_livedata_info"
seed swpc index.json "/products/noaa-planetary-k-index.json"
seed swpc forecast.json "/products/noaa-planetary-k-index-forecast.json"
seed travel demo.json "/api/TravelAdvisories"
seed usgs demo.json "/earthquakes/feed/v1.0/summary/all_day.geojson"
seed usgs emsc.json "/fdsnws/event/1/query?format=json"
seed wttr demo.json "/59.91,10.75?format=j1"
seed yr_no demo.json "/weatherapi/locationforecast/2.0/complete?lat=59.91&lon=10.75"
du -sh fuzz/seeds
