#include "feeds/travel/country_of_advisory.h"

#include "base/text/search_text.h"
#include "base/text/text.h"
#include "base/words/country_names.h"

#include <algorithm>
#include <map>

namespace nimbara {

namespace {

/// FIPS 10-4 and ISO 3166-1 for each country, in the order of FIPS.
constexpr std::string_view kCodes =
    "AAAW ACAG AEAE AFAF AGDZ AJAZ ALAL AMAM ANAD AOAO AQAS ARAR ASAU ATAU AUAT AVAI AXGB AYAQ BABH "
    "BBBB BCBW BDBM BEBE BFBS BGBD BHBZ BKBA BLBO BMMM BNBJ BOBY BPSB BQUM BRBR BTBT BUBG BVBV BXBN "
    "BYBI CACA CBKH CDTD CELK CFCG CGCD CHCN CICL CJKY CKCC CMCM CNKM COCO CQMP CRAU CSCR CTCF CUCU "
    "CVCV CWCK CYCY DADK DJDJ DODM DRDO DXGB ECEC EGEG EIIE EKGQ ENEE ERER ESSV ETET EUTF EZCZ FGGF "
    "FIFI FJFJ FKFK FMFM FOFO FPPF FQUM FRFR FSTF GAGM GBGA GGGE GHGH GIGI GJGD GKGG GLGL GMDE GOTF "
    "GPGP GQGU GRGR GTGT GVGN GYGY GZPS HAHT HKHK HMHM HOHN HQUM HRHR HUHU ICIS IDID IMIM ININ IOIO "
    "IPFR IRIR ISIL ITIT IVCI IZIQ JAJP JEJE JMJM JNSJ JOJO JQUM JUTF KEKE KGKG KNKP KQUM KRKI KSKR "
    "KTCX KUKW KVXK KZKZ LALA LELB LGLV LHLT LILR LOSK LQUM LSLI LTLS LULU LYLY MAMG MBMQ MCMO MDMD "
    "MFYT MGMN MHMS MIMW MJME MKMK MLML MNMC MOMA MPMU MQUM MRMR MTMT MUOM MVMV MXMX MYMY MZMZ NCNC "
    "NENU NFNF NGNE NHVU NING NLNL NNSX NONO NPNP NRNR NSSR NTBQ NUNI NZNZ ODSS PAPY PCPN PEPE PKPK "
    "PLPL PMPA POPT PPPG PSPW PUGW QAQA RERE RIRS RMMH RNMF RORO RPPH RQPR RSRU RWRW SASA SBPM SCKN "
    "SESC SFZA SGSN SHSH SISI SLSL SMSM SNSG SOSO SPES STLC SUSD SVSJ SWSE SXGS SYSY SZCH TBBL TDTT "
    "TETF THTH TITJ TKTC TLTK TNTO TOTG TPST TSTN TTTL TUTR TVTV TWTW TXTM TZTZ UCCW UGUG UKGB UPUA "
    "USUS UVBF UYUY UZUZ VCVC VEVE VIVG VMVN VQVI VTVA WANA WEPS WFWF WIEH WQUM WSWS WZSZ YMYE ZAZM "
    "ZIZW";
constexpr std::size_t kRow = 5;
constexpr std::size_t kLetters = 2;

struct Alias {
  std::string_view name;
  std::string_view iso;
};

/// Names that the issuer uses and our table of names does not.
constexpr Alias kAliases[] = {
    {"burma", "MM"},
    {"burma myanmar", "MM"},
    {"cote divoire ivory coast", "CI"},
    {"ivory coast", "CI"},
    {"czech republic", "CZ"},
    {"democratic republic of the congo", "CD"},
    {"democratic republic of the congo drc", "CD"},
    {"republic of the congo", "CG"},
    {"federated states of micronesia", "FM"},
    {"hong kong", "HK"},
    {"israel the west bank and gaza", "IL"},
    {"israel west bank and gaza", "IL"},
    {"kyrgyz republic", "KG"},
    {"macau", "MO"},
    {"mainland china", "CN"},
    {"north korea democratic peoples republic of korea", "KP"},
    {"republic of north macedonia", "MK"},
    {"russian federation", "RU"},
    {"timor leste east timor", "TL"},
    {"turkey", "TR"},
    {"turkiye", "TR"},
    {"turkiye turkey", "TR"},
    {"united states of america", "US"},
    {"vatican city", "VA"},
};

/// Without the words that one writer leaves out and another abbreviates.
std::string foldedName(std::string_view name) {
  std::string folded;
  std::string const all = searchFolded(name);
  for (std::string_view const word : split(all, ' ')) {
    if (word.empty() || word == "the" || word == "and") continue;
    if (!folded.empty()) folded += ' ';
    folded += word == "saint" ? "st" : word;
  }
  return folded;
}

bool isCountry(std::string const& code) {
  std::string const name = countryName(code, "en");
  return !name.empty() && name != code;
}

using CodesByName = std::map<std::string, std::string, std::less<>>;

CodesByName codesByName() {
  CodesByName codes;
  for (std::size_t row = 0; row < kCodes.size(); row += kRow) {
    std::string const iso(kCodes.substr(row + kLetters, kLetters));
    codes.emplace(foldedName(countryName(iso, "en")), iso);
  }
  for (Alias const& alias : kAliases) codes.insert_or_assign(foldedName(alias.name), std::string(alias.iso));
  return codes;
}

}  // namespace

std::string isoOfFips(std::string_view code) {
  std::string const upper = asciiUppered(trimmed(code));
  if (upper.size() != kLetters) return {};
  for (std::size_t row = 0; row < kCodes.size(); row += kRow) {
    if (kCodes.substr(row, kLetters) == upper) return std::string(kCodes.substr(row + kLetters, kLetters));
  }
  return isCountry(upper) ? upper : std::string();
}

std::string isoOfCountryName(std::string_view name) {
  static CodesByName const kByName = codesByName();
  auto const found = kByName.find(foldedName(name));
  return found == kByName.end() ? std::string() : found->second;
}

std::string countryOfAdvisory(std::string_view name, std::string_view code) {
  std::string byName = isoOfCountryName(name);
  return byName.empty() ? isoOfFips(code) : byName;
}

}  // namespace nimbara
