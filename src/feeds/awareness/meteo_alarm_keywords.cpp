#include "feeds/awareness/meteo_alarm_keywords.h"

#include "base/text/search_text.h"
#include "base/text/text.h"

#include <algorithm>
#include <iterator>

namespace nimbara {

namespace {

using Type = MeteoAlarmType;

/// Words of one kind, separated by "|". Beginnings of words stand for all their endings.
struct WordsOfType {
  Type type;
  std::string_view words;
};

constexpr WordsOfType kWords[] = {
    // The service's own words in the titles, and English.
    {Type::wind,
     "wind|winds|gale|gales|gust|gusts|storm|storms|windstorm|hurricane|tornado|squall|polar low"},
    {Type::snowIce,
     "snow-ice|snow|snowfall|snowstorm|snow drift|drifting snow|blowing snow|blizzard|freezing "
     "rain|icing|ice|"
     "black ice|icy|sleet|glaze|slippery"},
    {Type::thunderstorm,
     "thunderstorm|thunder|thunderstorms|lightning|severe storm|electrical storm|hail|hailstorm"},
    {Type::fog, "fog|foggy|mist|low visibility|freezing fog"},
    {Type::heat,
     "high-temperature|high temperature|extreme high temperature|heat|heatwave|heat wave|hot|hot weather|"
     "tropical night"},
    {Type::cold,
     "low-temperature|low temperature|extreme low temperature|low temperature ice|cold|cold wave|cold spell|"
     "frost|severe frost|ground frost|wind chill|windchill"},
    {Type::coastal,
     "coastalevent|coastal event|coastal|coast|storm surge|surge|sea state|rough sea|high seas|high "
     "waves|waves|"
     "swell|small craft|marine|sea wind|high water level|low water level"},
    {Type::forestFire,
     "forest-fire|forest fire|forestfire|wildfire|wild fire|wildland fire|fire danger|fire risk|"
     "fire weather|grass fire|bushfire"},
    {Type::avalanche, "avalanches|avalanche|snow avalanche"},
    {Type::rain,
     "rain|rains|rainfall|heavy rain|persistent rain|shower|showers|downpour|heavy precipitation|"
     "precipitation"},
    {Type::flood, "flooding|flood|floods|flash flood|inundation|high water|high flow|hydrological"},
    {Type::rainFlood, "rain-flood|rain flood|rainflood|rain and flood|flooding rain"},
    // German
    {Type::wind, "sturm|wind|böen|sturmböen|orkan|orkanböen|starkwind|windböen"},
    {Type::snowIce,
     "schnee|schneefall|schneefälle|schneesturm|schneeverwehung|glätte|glatteis|eisregen|glatteisregen|"
     "überfrierende nässe"},
    {Type::thunderstorm, "gewitter|blitz|hagel|unwetter durch gewitter"},
    {Type::fog, "nebel"},
    {Type::heat, "hitze|hitzewelle|wärmebelastung|hohe temperatur"},
    {Type::cold, "frost|kälte|tiefe temperatur"},
    {Type::coastal, "sturmflut|küste|hochwasser an der küste|seegang"},
    {Type::forestFire, "waldbrand|waldbrandgefahr"},
    {Type::avalanche, "lawine"},
    {Type::rain, "regen|starkregen|dauerregen|ergiebiger regen|tauwetter"},
    {Type::flood, "hochwasser|überschwemmung|überflutung"},
    {Type::rainFlood, "regen-hochwasser|regen hochwasser|regen und hochwasser"},
    // French
    {Type::wind, "vent|vents|vent violent|rafale|tempête"},
    {Type::snowIce, "neige|verglas|neige-verglas|pluie verglaçante|pluies verglaçantes"},
    {Type::thunderstorm, "orage|orages|grêle|foudre"},
    {Type::fog, "brouillard"},
    {Type::heat, "canicule|chaleur|haute température|forte chaleur"},
    {Type::cold, "grand froid|froid|gel|gelée"},
    {Type::coastal, "vagues|submersion|vagues-submersion|littoral"},
    {Type::forestFire, "feu de forêt|feux de forêt|incendie"},
    {Type::rain, "pluie|pluies|fortes pluies"},
    {Type::flood, "inondation|crue|crues"},
    {Type::rainFlood, "pluie-inondation|pluie inondation"},
    // Spanish, Portuguese, Italian, Romanian
    {Type::wind, "viento|vientos|vento|ventos|venti|vânt|vijelie|rachas|burrasca|furtuna"},
    {Type::snowIce,
     "nevada|nevadas|nieve|neve|queda de neve|hielo|gelo|ghiaccio|ninsoare|ninsori|viscol|polei|"
     "aguanieve|gheață"},
    {Type::thunderstorm,
     "tormenta|tormentas|trovoada|trovoadas|temporale|temporali|fulmini|grandine|granizo|furtuni cu "
     "descărcări|"
     "descărcări electrice|grindină"},
    {Type::fog, "niebla|nieblas|nevoeiro|nebbia|ceață"},
    {Type::heat,
     "temperaturas máximas|temperatura máxima|calor|tempo quente|caldo|ondata di calore|alte temperature|"
     "caniculă|căldură|ola de calor|onda de calor"},
    {Type::cold,
     "temperaturas mínimas|temperatura mínima|ola de frío|frio|tempo frio|freddo|basse temperature|ger|"
     "geruri|îngheț"},
    {Type::coastal,
     "costeros|fenómenos costeros|agitação marítima|mareggiata|mareggiate|mare mosso|eventi costieri|"
     "oleaje|litoral"},
    {Type::forestFire,
     "incendio forestal|incendios forestales|incêndio|incêndios florestais|incendi boschivi|"
     "incendii de vegetație"},
    {Type::avalanche, "alud|aludes|avalancha|avalanchas|valanga|valanghe|avalanșă|avalanșe|avalanchas"},
    {Type::rain, "lluvia|lluvias|chuva|precipitação|precipitaciones|pioggia|piogge|ploaie|ploi|precipitații"},
    {Type::flood, "inundación|inundaciones|inundação|inundações|alluvione|alluvioni|inundații|viituri"},
    // Dutch, Danish, Norwegian, Swedish, Icelandic
    {Type::wind,
     "windstoten|zware windstoten|storm|stormen|kuling|vind|hård vind|kraftig vind|vindkast|vindbyger|"
     "hvassviðri|stormur|rok"},
    {Type::snowIce,
     "sneeuw|sneeuwval|gladheid|ijzel|sne|snefald|snø|snøfokk|snöfall|snö|snestorm|halka|ishalka|isslag|"
     "glatføre|ising|snjór|snjókoma|hríð|hálka"},
    {Type::thunderstorm,
     "onweer|onweersbuien|torden|tordenvejr|åska|åskväder|åskoväder|lyn|lynnedslag|þrumuveður|"
     "eldingar|hagl|haglvejr"},
    {Type::fog, "mist|dichte mist|tåge|tåke|dimma|þoka"},
    {Type::heat, "hitte|hetebølge|hedebølge|varme|värmebölja|höga temperaturer|hiti"},
    {Type::cold, "koude|kou|strenge vorst|vorst|kulde|kyla|sträng kyla|frost|kuldi"},
    {Type::coastal,
     "stormvloed|forhøjet vandstand|høy vannstand|högt vattenstånd|lågt vattenstånd|vannstand|"
     "bølger|høye bølger|stormflod|sjávarflóð"},
    {Type::forestFire, "natuurbrand|bosbrand|skovbrand|skogbrann|skogsbrand|skogbrannfare|gróðureldar"},
    {Type::avalanche, "lawine|lavine|snøskred|snöskred|snjóflóð"},
    {Type::rain, "regen|zware regen|regn|kraftig regn|skybrud|skyfall|styrtregn|rigning"},
    {Type::flood, "overstroming|hoogwater|oversvømmelse|flom|översvämning|höga flöden|vatnavextir|flóð"},
    {Type::rainFlood, "regen-overstroming|regnflom|styrtregn og flom"},
    // Polish, Czech, Slovak, Slovene, Croatian, Serbian and Bosnian in Latin letters
    {Type::wind,
     "wiatr|silny wiatr|wichura|vítr|silný vítr|vietor|veter|močan veter|vjetar|vetar|olujni vjetar|bura|"
     "orkan"},
    {Type::snowIce,
     "śnieg|opady śniegu|zawieje|zamiecie|oblodzenie|gołoledź|sníh|sněžení|sněhové|náledí|ledovka|"
     "sneh|sneženie|snehové|poľadovica|sneg|sneženje|žled|poledica|snijeg|snježne|poledica|"
     "marznące opady"},
    {Type::thunderstorm,
     "burza|burze|burze z gradem|bouřky|bouřka|búrky|búrka|nevihte|nevihta|grmljavina|grmljavinsko|"
     "grmljavine|krupobitje|toča|tuča|krupobití"},
    {Type::fog, "mgła|gęsta mgła|mlha|mlhy|hmla|megla|magla"},
    {Type::heat,
     "upał|upały|vysoké teploty|horko|horúčavy|vysoké teploty|vročina|visoka temperatura|visoke temperature|"
     "toplinski val|vrućina"},
    {Type::cold,
     "mróz|silny mróz|przymrozki|nízké teploty|mráz|mrazy|nízke teploty|mraz|niske temperature|"
     "niska temperatura|hladnoća|nizke temperature"},
    {Type::coastal, "wezbranie sztormowe|cofka|sztorm|valovanje|obalni|obalno"},
    {Type::forestFire,
     "pożar|pożar lasu|požár|požáry|nebezpečí požárů|požiar|požar|šumski požar|požarna ogroženost"},
    {Type::avalanche, "lawina|lawiny|lavina|laviny|plazovi|lavíny|snežni plazovi"},
    {Type::rain,
     "deszcz|opady deszczu|silny deszcz|ulewa|déšť|dešť|vydatný déšť|srážky|dážď|zrážky|dež|padavine|kiša|"
     "obilna kiša|padaline|padavine"},
    {Type::flood, "powódź|wezbranie|povodeň|povodně|povodne|poplave|poplava"},
    {Type::rainFlood, "déšť-povodně|intenzywne opady deszczu z powodzią"},
    // Hungarian, Finnish, Estonian, Latvian, Lithuanian
    {Type::wind,
     "széllökés|szél|erős szél|szélvihar|myrsky|tuuli|tuulivaroitus|kova tuuli|puuska|torm|tugev tuul|"
     "vējš|stiprs vējš|vētra|vėjas|stiprus vėjas|audra"},
    {Type::snowIce,
     "hó|havazás|hófúvás|ónos eső|jegesedés|lumi|lumisade|lumipyry|liukkaus|jäätävä sade|lumesadu|tuisk|"
     "jäide|libedus|sniegs|sniegputenis|apledojums|atkala|sniegas|pūga|plikledis|lijundra|snygis"},
    {Type::thunderstorm,
     "zivatar|heves zivatar|villám|jégeső|ukkonen|ukkosta|ukkospuuska|äike|äikesetorm|rahe|pērkona negaiss|"
     "negaiss|pērkons|krusa|perkūnija|kruša"},
    {Type::fog, "köd|tartós köd|sumu|udu|tihe udu|migla|rūkas"},
    {Type::heat,
     "hőség|hőhullám|magas "
     "hőmérséklet|helle|hellevaroitus|kuumus|kuumalaine|kuum|karstums|karstis|karštis|kaitra"},
    {Type::cold,
     "extrém hideg|hideg|fagy|alacsony hőmérséklet|pakkanen|kova pakkanen|külm|pakane|sals|aukstums|šaltis|"
     "šalna|speigas"},
    {Type::coastal,
     "merenkäynti|aallokko|korkea merivesi|meriveden|veetase|kõrge veetase|jūras|vandens lygis jūroje"},
    {Type::forestFire,
     "erdőtűz|tűzveszély|metsäpalo|metsäpalovaroitus|ruohikkopalo|maastopalo|tuleoht|tulekahju|"
     "mežu ugunsbīstamība|ugunsbīstamība|miškų gaisringumas|gaisringumas"},
    {Type::avalanche, "lavinaveszély|lumivyöry"},
    {Type::rain,
     "eső|felhőszakadás|sok eső|sade|rankkasade|runsas sade|vihm|tugev vihm|paduvihm|lietus|stiprs lietus|"
     "lietusgāzes|stiprus lietus|liūtis"},
    {Type::flood, "árvíz|belvíz|tulva|tulvavaroitus|üleujutus|plūdi|potvynis"},
    // Serbian, Macedonian, Bulgarian, Ukrainian
    {Type::wind, "ветар|ветер|вятър|силен вятър|вітер|шквал|буря|олуја|јак ветар"},
    {Type::snowIce,
     "снег|сняг|сніг|заледяване|ожеледиця|ожеледь|лед|поледица|поледиця|заметіль|снеговалеж|хуртовина"},
    {Type::thunderstorm,
     "гръмотевич|гръмотевична буря|гроза|грози|грмљавин|грмеж|грмотевици|невреме|градушка"},
    {Type::fog, "мъгла|магла|туман"},
    {Type::heat,
     "високи температури|висока температура|спека|горещини|жега|топлотен бран|топлотни бран|сильна спека"},
    {Type::cold, "ниски температури|ниска температура|студ|мороз|заморозки|мраз|студено"},
    {Type::coastal, "вълнение|високі хвилі"},
    {Type::forestFire, "горски пожар|шумски пожар|пожежна небезпека|пожар|пожежа"},
    {Type::avalanche, "лавин|лавина|лавини"},
    {Type::rain, "дъжд|валежи|киша|дожд|дощ|зливи|злива|обилан киша|обилне падавине|врнежи|падавине"},
    {Type::flood, "поплав|наводнение|наводнения|повінь|паводок"},
    // Greek, Hebrew, Maltese, Catalan, Luxembourgish
    {Type::wind, "άνεμος|άνεμοι|ισχυροί άνεμοι|θυελλώδεις|רוח|רוחות|riħ|vent fort"},
    {Type::snowIce, "χιόνι|χιονόπτωση|χιονοπτώσεις|παγετός και χιόνι|שלג"},
    {Type::thunderstorm, "καταιγίδα|καταιγίδες|χαλάζι|סופות רעמים|רעמים|ברד"},
    {Type::fog, "ομίχλη|ערפל"},
    {Type::heat, "καύσωνας|υψηλές θερμοκρασίες|ζέστη|עומס חום|חום"},
    {Type::cold, "παγετός|χαμηλές θερμοκρασίες|ψύχος|קרה|קור"},
    {Type::coastal, "θαλάσσια|παράκτια|גלים|גלים גבוהים"},
    {Type::forestFire, "πυρκαγιά|δασικές πυρκαγιές|שריפות|סכנת שריפות"},
    {Type::avalanche, "χιονοστιβάδα|allaus|allau"},
    {Type::rain, "βροχή|βροχές|βροχόπτωση|גשם|pluja"},
    {Type::flood, "πλημμύρα|πλημμύρες|הצפות|שיטפונות|inundacions"},
};

std::vector<WarningWord> sortedWords() {
  std::vector<WarningWord> sorted;
  for (WordsOfType const& row : kWords) {
    for (std::string_view const word : split(row.words, '|'))
      sorted.push_back({searchFolded(word), row.type});
  }
  std::ranges::stable_sort(sorted, std::ranges::greater{},
                           [](WarningWord const& w) { return w.folded.size(); });
  return sorted;
}

}  // namespace

std::vector<WarningWord> const& warningWordsLongestFirst() {
  static std::vector<WarningWord> const kSorted = sortedWords();
  return kSorted;
}

}  // namespace nimbara
