#include "regions/region_spelling.h"

#include <algorithm>

namespace nimbara {

namespace {

struct Spelling {
  std::string_view code;
  std::string_view name;
};

constexpr Spelling kSpellings[] = {
    {"ES070", "Valle del Almanzora y Los Vélez"},
    {"ES072", "Poniente y Almería Capital"},
    {"ES075", "Campiña gaditana"},
    {"ES079", "Campiña cordobesa"},
    {"ES080", "Subbética cordobesa"},
    {"ES086", "Andévalo y Condado"},
    {"ES090", "Valle del Guadalquivir de Jaén"},
    {"ES091", "Capital y Montes de Jaén"},
    {"ES095", "Axarquía"},
    {"ES097", "Campiña sevillana"},
    {"ES102", "Albarracín y Jiloca"},
    {"ES103", "Gúdar y Maestrazgo"},
    {"ES104", "Bajo Aragón de Teruel"},
    {"ES106", "Ibérica zaragozana"},
    {"ES118", "Levante mallorquín"},
    {"ES131", "Área metropolitana de Tenerife"},
    {"ES133", "Litoral cántabro"},
    {"ES134", "Liébana"},
    {"ES137", "Meseta de Ávila"},
    {"ES138", "Sistema Central de Ávila"},
    {"ES139", "Sur de Ávila"},
    {"ES140", "Cordillera Cantábrica de Burgos"},
    {"ES142", "Condado de Treviño"},
    {"ES144", "Ibérica de Burgos"},
    {"ES145", "Cordillera Cantábrica de León"},
    {"ES146", "Bierzo de León"},
    {"ES147", "Meseta de León"},
    {"ES148", "Cordillera Cantábrica de Palencia"},
    {"ES155", "Ibérica de Soria"},
    {"ES161", "La Mancha albaceteña"},
    {"ES163", "Hellín y Almansa"},
    {"ES169", "Serranía de Cuenca"},
    {"ES171", "Serranía de Guadalajara"},
    {"ES179", "Depresión central de Barcelona"},
    {"ES184", "Ampurdán"},
    {"ES186", "Valle de Arán"},
    {"ES188", "Depresión central de Lleida"},
    {"ES189", "Depresión central de Tarragona"},
    {"ES195", "La Siberia extremeña"},
    {"ES198", "Norte de Cáceres"},
    {"ES199", "Tajo y Alagón"},
    {"ES200", "Meseta cacereña"},
    {"ES201", "Villuercas y Montánchez"},
    {"ES202", "Noroeste de A Coruña"},
    {"ES203", "Oeste de A Coruña"},
    {"ES204", "Interior de A Coruña"},
    {"ES205", "Suroeste de A Coruña"},
    {"ES206", "A Mariña"},
    {"ES208", "Montaña de Lugo"},
    {"ES211", "Miño de Ourense"},
    {"ES213", "Montaña de Ourense"},
    {"ES217", "Miño de Pontevedra"},
    {"ES224", "Valle del Guadalentín, Lorca y Águilas"},
    {"ES225", "Campo de Cartagena y Mazarrón"},
    {"ES226", "Vertiente cantábrica de Navarra"},
    {"ES230", "Cuenca del Nervión"},
    {"ES238", "Ibérica riojana"},
    {"ES242", "Interior norte de Castellón"},
    {"ES243", "Litoral norte de Castellón"},
    {"ES244", "Interior sur de Castellón"},
    {"ES245", "Litoral sur de Castellón"},
    {"ES842", "Costa - Litoral cántabro"},
    {"ES845", "Costa - A Mariña"},
    {"ES846", "Costa - Noroeste de A Coruña"},
    {"ES847", "Costa - Oeste de A Coruña"},
    {"ES848", "Costa - Suroeste de A Coruña"},
    {"ES850", "Costa - Miño de Pontevedra"},
    {"ES855", "Costa - Axarquía"},
    {"ES857", "Costa - Poniente y Almería Capital"},
    {"ES859", "Costa - Valle del Guadalentín, Lorca y Águilas"},
    {"ES860", "Costa - Campo de Cartagena y Mazarrón"},
    {"ES865", "Costa - Litoral sur de Castellón"},
    {"ES866", "Costa - Litoral norte de Castellón"},
    {"ES884", "Costa - Área metropolitana de Tenerife"},
    {"ES890", "Costa - Ampurdán"},
    {"SK204", "Piešťany"},
};

/// The letters before the first that was lost.
std::string_view undamaged(std::string_view name) {
  auto const lost = std::ranges::find_if(name, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
  return {name.begin(), lost};
}

}  // namespace

std::string spelledRegionName(std::string_view code, std::string published) {
  auto const* const row = std::ranges::find(kSpellings, code, &Spelling::code);
  if (row == std::end(kSpellings)) return published;
  bool const isKnown = published.empty() || published.starts_with(undamaged(row->name));
  return isKnown ? std::string(row->name) : std::move(published);
}

}  // namespace nimbara
