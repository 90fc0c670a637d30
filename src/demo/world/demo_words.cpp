#include "demo/world/demo_words.h"

#include <fmt/format.h>

#include <algorithm>

namespace nimbara {

namespace {

constexpr DemoWords kWords[] = {
    {"en",
     {"Strong wind", "Thunderstorm", "Heavy rain", "Snow and ice", "Fog", "High temperature",
      "Low temperature", "Flood"},
     "An invented warning for {}.",
     "There is nothing to do."},
    {"ar",
     {"رياح قوية", "عواصف رعدية", "أمطار غزيرة", "ثلوج", "ضباب", "موجة حر", "موجة برد", "فيضان"},
     "تحذير وهمي لمنطقة {}.",
     "لا يلزم فعل أي شيء."},
    {"de",
     {"Sturm", "Gewitter", "Starkregen", "Schnee und Glätte", "Nebel", "Hitze", "Frost", "Hochwasser"},
     "Eine erfundene Warnung für {}.",
     "Es ist nichts zu tun."},
    {"es",
     {"Viento fuerte", "Tormenta eléctrica", "Lluvia intensa", "Nevada", "Niebla", "Altas temperaturas",
      "Bajas temperaturas", "Inundación"},
     "Un aviso inventado para {}.",
     "No hay que hacer nada."},
    {"fr",
     {"Vent violent", "Orages", "Fortes pluies", "Neige et verglas", "Brouillard", "Canicule", "Grand froid",
      "Inondation"},
     "Une vigilance inventée pour {}.",
     "Il n’y a rien à faire."},
    {"he",
     {"רוחות חזקות", "סופות רעמים", "גשם כבד", "שלג", "ערפל", "גל חום", "גל קור", "שיטפון"},
     "אזהרה מומצאת עבור {}.",
     "אין צורך לעשות דבר."},
    {"hi",
     {"तेज़ हवा", "गरज के साथ तूफ़ान", "भारी वर्षा", "हिमपात", "कोहरा", "लू", "शीत लहर", "बाढ़"},
     "{} के लिए एक काल्पनिक चेतावनी।",
     "कुछ करने की आवश्यकता नहीं है।"},
    {"id",
     {"Angin kencang", "Badai petir", "Hujan lebat", "Salju", "Kabut", "Suhu tinggi", "Suhu rendah",
      "Banjir"},
     "Peringatan rekaan untuk {}.",
     "Tidak ada yang perlu dilakukan."},
    {"ja",
     {"強風", "雷", "大雨", "大雪", "濃霧", "高温", "低温", "洪水"},
     "{}に対する架空の警報です。",
     "何もする必要はありません。"},
    {"kk",
     {"Қатты жел", "Найзағай", "Қатты жаңбыр", "Қар", "Тұман", "Қатты ыстық", "Қатты аяз", "Су тасқыны"},
     "{} үшін ойдан шығарылған ескерту.",
     "Ештеңе істеудің қажеті жоқ."},
    {"ko",
     {"강풍", "뇌우", "호우", "대설", "안개", "폭염", "한파", "홍수"},
     "{}에 대한 가상의 경보입니다.",
     "아무것도 하실 필요가 없습니다."},
    {"no",
     {"Kuling", "Torden", "Kraftig regn", "Snø og is", "Tåke", "Høy temperatur", "Lav temperatur", "Flom"},
     "Et oppdiktet varsel for {}.",
     "Ingenting må gjøres."},
    {"pt",
     {"Vento forte", "Tempestade", "Chuva forte", "Neve e gelo", "Nevoeiro", "Calor", "Frio", "Inundação"},
     "Um aviso inventado para {}.",
     "Não é preciso fazer nada."},
    {"ru",
     {"Сильный ветер", "Гроза", "Сильный дождь", "Снег и гололёд", "Туман", "Сильная жара", "Сильный мороз",
      "Паводок"},
     "Вымышленное предупреждение: {}.",
     "Ничего делать не нужно."},
    {"sw",
     {"Upepo mkali", "Radi na mvua", "Mvua kubwa", "Theluji", "Ukungu", "Joto kali", "Baridi kali",
      "Mafuriko"},
     "Onyo la kubuni kwa {}.",
     "Hakuna la kufanya."},
    {"th",
     {"ลมแรง", "พายุฝนฟ้าคะนอง", "ฝนตกหนัก", "หิมะ", "หมอก", "อากาศร้อนจัด", "อากาศหนาว", "น้ำท่วม"},
     "คำเตือนสมมติสำหรับ {}",
     "ไม่ต้องทำอะไร"},
    {"zh-CN",
     {"大风", "雷电", "暴雨", "暴雪", "大雾", "高温", "寒潮", "洪水"},
     "针对{}的虚构预警。",
     "无需采取任何行动。"},
    {"zh-HK",
     {"強風", "雷暴", "暴雨", "大雪", "大霧", "酷熱天氣", "寒冷天氣", "水浸"},
     "就{}發出的虛構警告。",
     "毋須採取任何行動。"},
};

}  // namespace

std::string DemoWords::sentenceFor(std::string_view area) const {
  return fmt::format(fmt::runtime(sentence), area);
}

DemoWords const& demoWords(std::string_view tag) {
  auto const* const found = std::ranges::find(kWords, tag, &DemoWords::tag);
  return found == std::end(kWords) ? kWords[0] : *found;
}

}  // namespace nimbara
