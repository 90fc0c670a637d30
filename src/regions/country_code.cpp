#include "regions/country_code.h"

#include "base/text/text.h"

namespace nimbara {

namespace {

/// All of ISO 3166-1, and Kosovo's codes of the range that is left to users: the code of two letters and that
/// of three, six characters each with the blank behind them.
constexpr std::string_view kCountries =
    "ADAND AEARE AFAFG AGATG AIAIA ALALB AMARM AOAGO AQATA ARARG ASASM ATAUT AUAUS AWABW AXALA AZAZE BABIH "
    "BBBRB BDBGD BEBEL BFBFA BGBGR BHBHR BIBDI BJBEN BLBLM BMBMU BNBRN BOBOL BQBES BRBRA BSBHS BTBTN BVBVT "
    "BWBWA BYBLR BZBLZ CACAN CCCCK CDCOD CFCAF CGCOG CHCHE CICIV CKCOK CLCHL CMCMR CNCHN COCOL CRCRI CUCUB "
    "CVCPV CWCUW CXCXR CYCYP CZCZE DEDEU DJDJI DKDNK DMDMA DODOM DZDZA ECECU EEEST EGEGY EHESH ERERI ESESP "
    "ETETH FIFIN FJFJI FKFLK FMFSM FOFRO FRFRA GAGAB GBGBR GDGRD GEGEO GFGUF GGGGY GHGHA GIGIB GLGRL GMGMB "
    "GNGIN GPGLP GQGNQ GRGRC GSSGS GTGTM GUGUM GWGNB GYGUY HKHKG HMHMD HNHND HRHRV HTHTI HUHUN IDIDN IEIRL "
    "ILISR IMIMN ININD IOIOT IQIRQ IRIRN ISISL ITITA JEJEY JMJAM JOJOR JPJPN KEKEN KGKGZ KHKHM KIKIR KMCOM "
    "KNKNA KPPRK KRKOR KWKWT KYCYM KZKAZ LALAO LBLBN LCLCA LILIE LKLKA LRLBR LSLSO LTLTU LULUX LVLVA LYLBY "
    "MAMAR MCMCO MDMDA MEMNE MFMAF MGMDG MHMHL MKMKD MLMLI MMMMR MNMNG MOMAC MPMNP MQMTQ MRMRT MSMSR MTMLT "
    "MUMUS MVMDV MWMWI MXMEX MYMYS MZMOZ NANAM NCNCL NENER NFNFK NGNGA NINIC NLNLD NONOR NPNPL NRNRU NUNIU "
    "NZNZL OMOMN PAPAN PEPER PFPYF PGPNG PHPHL PKPAK PLPOL PMSPM PNPCN PRPRI PSPSE PTPRT PWPLW PYPRY QAQAT "
    "REREU ROROU RSSRB RURUS RWRWA SASAU SBSLB SCSYC SDSDN SESWE SGSGP SHSHN SISVN SJSJM SKSVK SLSLE SMSMR "
    "SNSEN SOSOM SRSUR SSSSD STSTP SVSLV SXSXM SYSYR SZSWZ TCTCA TDTCD TFATF TGTGO THTHA TJTJK TKTKL TLTLS "
    "TMTKM TNTUN TOTON TRTUR TTTTO TVTUV TWTWN TZTZA UAUKR UGUGA UMUMI USUSA UYURY UZUZB VAVAT VCVCT VEVEN "
    "VGVGB VIVIR VNVNM VUVUT WFWLF WSWSM XKXKX YEYEM YTMYT ZAZAF ZMZMB ZWZWE ";
constexpr std::size_t kRow = 6;
constexpr std::size_t kShort = 2;
constexpr std::size_t kLong = 3;

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

}  // namespace nimbara
