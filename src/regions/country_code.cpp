#include "regions/country_code.h"

#include "base/text/text.h"

namespace nimbara {

namespace {

/// All of ISO 3166-1, and Kosovo's codes of the range that is left to users: the code of two letters, that of
/// three and the number, nine characters each with the blank behind them.
constexpr std::string_view kCountries =
    "ADAND020 AEARE784 AFAFG004 AGATG028 AIAIA660 ALALB008 AMARM051 AOAGO024 AQATA010 ARARG032 ASASM016 "
    "ATAUT040 AUAUS036 AWABW533 AXALA248 AZAZE031 BABIH070 BBBRB052 BDBGD050 BEBEL056 BFBFA854 BGBGR100 "
    "BHBHR048 BIBDI108 BJBEN204 BLBLM652 BMBMU060 BNBRN096 BOBOL068 BQBES535 BRBRA076 BSBHS044 BTBTN064 "
    "BVBVT074 BWBWA072 BYBLR112 BZBLZ084 CACAN124 CCCCK166 CDCOD180 CFCAF140 CGCOG178 CHCHE756 CICIV384 "
    "CKCOK184 CLCHL152 CMCMR120 CNCHN156 COCOL170 CRCRI188 CUCUB192 CVCPV132 CWCUW531 CXCXR162 CYCYP196 "
    "CZCZE203 DEDEU276 DJDJI262 DKDNK208 DMDMA212 DODOM214 DZDZA012 ECECU218 EEEST233 EGEGY818 EHESH732 "
    "ERERI232 ESESP724 ETETH231 FIFIN246 FJFJI242 FKFLK238 FMFSM583 FOFRO234 FRFRA250 GAGAB266 GBGBR826 "
    "GDGRD308 GEGEO268 GFGUF254 GGGGY831 GHGHA288 GIGIB292 GLGRL304 GMGMB270 GNGIN324 GPGLP312 GQGNQ226 "
    "GRGRC300 GSSGS239 GTGTM320 GUGUM316 GWGNB624 GYGUY328 HKHKG344 HMHMD334 HNHND340 HRHRV191 HTHTI332 "
    "HUHUN348 IDIDN360 IEIRL372 ILISR376 IMIMN833 ININD356 IOIOT086 IQIRQ368 IRIRN364 ISISL352 ITITA380 "
    "JEJEY832 JMJAM388 JOJOR400 JPJPN392 KEKEN404 KGKGZ417 KHKHM116 KIKIR296 KMCOM174 KNKNA659 KPPRK408 "
    "KRKOR410 KWKWT414 KYCYM136 KZKAZ398 LALAO418 LBLBN422 LCLCA662 LILIE438 LKLKA144 LRLBR430 LSLSO426 "
    "LTLTU440 LULUX442 LVLVA428 LYLBY434 MAMAR504 MCMCO492 MDMDA498 MEMNE499 MFMAF663 MGMDG450 MHMHL584 "
    "MKMKD807 MLMLI466 MMMMR104 MNMNG496 MOMAC446 MPMNP580 MQMTQ474 MRMRT478 MSMSR500 MTMLT470 MUMUS480 "
    "MVMDV462 MWMWI454 MXMEX484 MYMYS458 MZMOZ508 NANAM516 NCNCL540 NENER562 NFNFK574 NGNGA566 NINIC558 "
    "NLNLD528 NONOR578 NPNPL524 NRNRU520 NUNIU570 NZNZL554 OMOMN512 PAPAN591 PEPER604 PFPYF258 PGPNG598 "
    "PHPHL608 PKPAK586 PLPOL616 PMSPM666 PNPCN612 PRPRI630 PSPSE275 PTPRT620 PWPLW585 PYPRY600 QAQAT634 "
    "REREU638 ROROU642 RSSRB688 RURUS643 RWRWA646 SASAU682 SBSLB090 SCSYC690 SDSDN729 SESWE752 SGSGP702 "
    "SHSHN654 SISVN705 SJSJM744 SKSVK703 SLSLE694 SMSMR674 SNSEN686 SOSOM706 SRSUR740 SSSSD728 STSTP678 "
    "SVSLV222 SXSXM534 SYSYR760 SZSWZ748 TCTCA796 TDTCD148 TFATF260 TGTGO768 THTHA764 TJTJK762 TKTKL772 "
    "TLTLS626 TMTKM795 TNTUN788 TOTON776 TRTUR792 TTTTO780 TVTUV798 TWTWN158 TZTZA834 UAUKR804 UGUGA800 "
    "UMUMI581 USUSA840 UYURY858 UZUZB860 VAVAT336 VCVCT670 VEVEN862 VGVGB092 VIVIR850 VNVNM704 VUVUT548 "
    "WFWLF876 WSWSM882 XKXKX--- YEYEM887 YTMYT175 ZAZAF710 ZMZMB894 ZWZWE716 ";
constexpr std::size_t kRow = 9;
constexpr std::size_t kShort = 2;
constexpr std::size_t kLong = 3;
constexpr std::size_t kNumber = kShort + kLong;

/// Of the row that has `code` from its character `column` on; empty when there is none.
std::string_view rowWith(std::string_view code, std::size_t column) {
  for (std::size_t at = 0; at < kCountries.size(); at += kRow) {
    std::string_view const row = kCountries.substr(at, kRow);
    if (row.substr(column, code.size()) == code) return row;
  }
  return {};
}

}  // namespace

std::string isoCountryCode(std::string_view code) {
  std::string iso = asciiUppered(code);
  if (iso == "UK") return "GB";
  if (iso == "EL") return "GR";
  return iso;
}

std::string alpha3CountryCode(std::string_view code) {
  std::string const alpha2 = isoCountryCode(code);
  if (alpha2.size() != kShort) return {};
  std::string_view const row = rowWith(alpha2, 0);
  return row.empty() ? std::string() : std::string(row.substr(kShort, kLong));
}

std::string alpha2CountryCode(std::string_view alpha3) {
  if (alpha3.size() != kLong) return {};
  return std::string(rowWith(asciiUppered(alpha3), kShort).substr(0, kShort));
}

std::string countryCodeOfNumber(int number) {
  constexpr int kHighest = 999;
  if (number < 0 || number > kHighest) return {};
  std::string const digits = std::to_string(kHighest + 1 + number).substr(1);
  return std::string(rowWith(digits, kNumber).substr(0, kShort));
}

}  // namespace nimbara
