#include "feeds/storms/hurricane_places.h"

#include <limits>

namespace nimbara {

namespace {

constexpr HurricanePlace kPlaces[] = {
    {"Miami", 25.77, -80.19},
    {"Key West", 24.56, -81.78},
    {"Tampa", 27.95, -82.46},
    {"Pensacola", 30.42, -87.22},
    {"Jacksonville", 30.33, -81.66},
    {"Savannah", 32.08, -81.09},
    {"Charleston", 32.78, -79.93},
    {"Wilmington", 34.23, -77.94},
    {"Norfolk", 36.85, -76.29},
    {"New York", 40.71, -74.01},
    {"Boston", 42.36, -71.06},
    {"New Orleans", 29.95, -90.07},
    {"Galveston", 29.30, -94.80},
    {"Corpus Christi", 27.80, -97.40},
    {"Brownsville", 25.90, -97.50},
    {"Halifax", 44.65, -63.58},
    {"St. John's", 47.56, -52.71},
    {"Hamilton, Bermuda", 32.29, -64.78},
    {"Ponta Delgada", 37.74, -25.67},
    {"Praia", 14.93, -23.51},
    {"Nassau", 25.06, -77.34},
    {"Freeport", 26.53, -78.70},
    {"Havana", 23.11, -82.37},
    {"Santiago de Cuba", 20.02, -75.82},
    {"Kingston", 17.97, -76.79},
    {"George Town", 19.29, -81.37},
    {"Port-au-Prince", 18.54, -72.34},
    {"Santo Domingo", 18.47, -69.90},
    {"San Juan", 18.47, -66.11},
    {"Charlotte Amalie", 18.34, -64.93},
    {"Philipsburg", 18.03, -63.05},
    {"Basse-Terre", 16.00, -61.73},
    {"Fort-de-France", 14.60, -61.07},
    {"Bridgetown", 13.10, -59.62},
    {"Port of Spain", 10.66, -61.51},
    {"Willemstad", 12.11, -68.93},
    {"Cartagena", 10.40, -75.51},
    {"Bluefields", 12.01, -83.76},
    {"La Ceiba", 15.77, -86.80},
    {"Belize City", 17.50, -88.19},
    {"Cancún", 21.17, -86.85},
    {"Progreso", 21.28, -89.66},
    {"Veracruz", 19.18, -96.14},
    {"Tampico", 22.26, -97.87},
    {"Acapulco", 16.86, -99.88},
    {"Salina Cruz", 16.17, -95.20},
    {"Manzanillo", 19.05, -104.32},
    {"Puerto Vallarta", 20.65, -105.23},
    {"Mazatlán", 23.24, -106.42},
    {"Cabo San Lucas", 22.89, -109.92},
    {"La Paz", 24.14, -110.31},
    {"San Diego", 32.72, -117.16},
    {"Puerto San José", 13.93, -90.82},
    {"Honolulu", 21.31, -157.86},
    {"Hilo", 19.71, -155.08},
    {"Kahului", 20.89, -156.47},
    {"Hagåtña", 13.47, 144.75},
    {"Ngerulmud", 7.50, 134.62},
    {"Palikir", 6.92, 158.16},
    {"Majuro", 7.09, 171.38},
    {"Saipan", 15.19, 145.75},
    {"Manila", 14.60, 120.98},
    {"Batangas", 13.76, 121.06},
    {"Tacloban", 11.24, 125.00},
    {"Cebu", 10.32, 123.89},
    {"Laoag", 18.20, 120.59},
    {"Taipei", 25.05, 121.53},
    {"Hualien", 23.99, 121.60},
    {"Kaohsiung", 22.62, 120.31},
    {"Hong Kong", 22.28, 114.16},
    {"Macau", 22.20, 113.55},
    {"Zhanjiang", 21.28, 110.34},
    {"Haikou", 20.04, 110.34},
    {"Xiamen", 24.48, 118.08},
    {"Wenzhou", 28.00, 120.67},
    {"Shanghai", 31.22, 121.46},
    {"Haiphong", 20.86, 106.68},
    {"Da Nang", 16.07, 108.22},
    {"Naha", 26.21, 127.68},
    {"Kagoshima", 31.57, 130.55},
    {"Kochi", 33.56, 133.53},
    {"Osaka", 34.69, 135.50},
    {"Nagoya", 35.18, 136.91},
    {"Tokyo", 35.69, 139.69},
    {"Sendai", 38.27, 140.87},
    {"Busan", 35.10, 129.04},
    {"Jeju", 33.51, 126.52},
};

}  // namespace

std::span<HurricanePlace const> hurricanePlaces() {
  return kPlaces;
}

NearestHurricanePlace nearestHurricanePlace(Coordinate coordinate) {
  NearestHurricanePlace nearest{kPlaces[0], std::numeric_limits<double>::infinity()};
  for (HurricanePlace const& place : kPlaces) {
    double const km = haversineKm(coordinate, place.coordinate());
    if (km < nearest.km) nearest = {place, km};
  }
  return nearest;
}

}  // namespace nimbara
