#include "feeds/cap/cap_reader.h"

#include "support/answers/cap_message.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::CapBlock;
using test::capMessage;
using testing::ElementsAre;
using testing::HasSubstr;

CapAlert messageOf(std::string const& body) {
  auto message = parseCap(body);
  EXPECT_TRUE(message) << message.error();
  return message ? std::move(*message) : CapAlert{};
}

CapInfo blockOf(CapBlock const& block) {
  CapAlert const message = messageOf(capMessage({block}));
  EXPECT_EQ(message.infos.size(), 1U);
  return message.infos.at(0);
}

CapArea areaOf(std::string const& elements) {
  CapAlert const message = messageOf("<alert><info><area>" + elements + "</area></info></alert>");
  return message.infos.at(0).areas.at(0);
}

TEST(CapReader, ReadsEveryFieldWithPrefixesOrWithout) {
  for (std::string const prefix : {"", "cap:"}) {
    auto const element = [&](std::string const& name, std::string const& text) {
      return "<" + prefix + name + ">" + text + "</" + prefix + name + ">";
    };
    auto const pair = [&](std::string const& name, std::string const& key, std::string const& value) {
      return element(name, element("valueName", key) + element("value", value));
    };
    CapAlert const message = messageOf(element(
        "alert",
        element("identifier", " 2.49.0.1 ") + element("sender", "a@b.example") +
            element("sent", "2026-11-21T06:30:00+01:00") + element("status", "Actual") +
            element("msgType", "Update") +
            element("references", "a@b.example, 2.48,\n2026-11-20T06:00:00-00:00 \n c@d.example,2.47") +
            element("info",
                    element("language", "de-DE") + element("event", "Sturm") + element("headline", "H") +
                        element("description", "D") + element("instruction", "I") +
                        element("urgency", "Future") + element("severity", "Severe") +
                        element("certainty", "Likely") + element("responseType", "Monitor") +
                        element("responseType", "Avoid") + element("effective", "2026-11-21T05:00:00Z") +
                        element("onset", "2026-11-21T06:00:00Z") +
                        element("expires", "2026-11-21T07:00:00Z") + element("senderName", "Amt") +
                        element("web", "https://b.example") + pair("parameter", "gusts", "60") +
                        pair("parameter", "gusts", "70") + pair("eventCode", "II", "52") +
                        element("area", element("areaDesc", "Küste") + pair("geocode", "EMMA_ID", "DE1") +
                                            pair("geocode", "WARNCELLID", "114") +
                                            element("polygon", "50,8 51,8\n\t51,9 50,8") +
                                            element("circle", "50.5,8.5 12"))) +
            element("info", element("language", "en"))));
    EXPECT_EQ(message.identifier, "2.49.0.1");
    EXPECT_EQ(message.sender, "a@b.example");
    EXPECT_EQ(message.sent, at("2026-11-21T05:30:00Z"));
    EXPECT_EQ(message.msgType, "Update");
    EXPECT_EQ(message.references,
              (std::vector<CapReference>{{"a@b.example", "2.48", at("2026-11-20T06:00:00Z")},
                                         {"c@d.example", "2.47", {}}}));
    ASSERT_EQ(message.infos.size(), 2U);
    CapInfo const& info = message.infos[0];
    EXPECT_EQ(info.language, "de-DE");
    EXPECT_EQ(info.event + info.headline + info.description + info.instruction, "SturmHDI");
    EXPECT_EQ(info.urgency + info.severity + info.certainty, "FutureSevereLikely");
    EXPECT_THAT(info.responseTypes, ElementsAre("Monitor", "Avoid"));
    EXPECT_EQ(info.effective, at("2026-11-21T05:00:00Z"));
    EXPECT_EQ(info.onset, at("2026-11-21T06:00:00Z"));
    EXPECT_EQ(info.expires, at("2026-11-21T07:00:00Z"));
    EXPECT_EQ(info.senderName, "Amt");
    EXPECT_EQ(info.web, "https://b.example");
    EXPECT_THAT(info.parameters, ElementsAre(CapValue{"gusts", "60"}, CapValue{"gusts", "70"}));
    EXPECT_EQ(valueOf(info.parameters, "gusts"), "60");
    EXPECT_EQ(valueOf(info.parameters, "snow"), std::nullopt);
    EXPECT_THAT(info.eventCodes, ElementsAre(CapValue{"II", "52"}));
    EXPECT_EQ(info.areas, (std::vector<CapArea>{{"Küste",
                                                 {{{50, 8}, {51, 8}, {51, 9}, {50, 8}}},
                                                 {{{50.5, 8.5}, 12}},
                                                 {{"EMMA_ID", "DE1"}, {"WARNCELLID", "114"}}}}));
    EXPECT_EQ(message.infos[1].language, "en");
  }
}

TEST(CapReader, LeavesTextsAsTheyAreButForControlCharacters) {
  CapBlock block;
  block.description = " One.\n\n  Two &lt;b&gt;&amp;amp; three\t. \n";
  block.instruction = "a&#x9B;31m&#x85;&#x7F;b &#x202F;";
  block.headline = "";
  CapInfo const info = blockOf(block);
  EXPECT_EQ(info.description, " One.\n\n  Two <b>&amp; three\t. \n");
  EXPECT_EQ(info.instruction, "a31mb \u202F");
  EXPECT_EQ(info.headline, "");
}

TEST(CapReader, LeavesOutWhatItCannotRead) {
  CapArea const area = areaOf(
      "<polygon/><polygon>1,2 3,4</polygon><polygon>1,2 3,4 5,x 1,2</polygon>"
      "<circle>1,2</circle><circle>1,2 -3</circle><geocode/><altitude>0</altitude>"
      "<polygon>60,179 61,180 61,-179 60,179</polygon>");
  EXPECT_EQ(area.polygons, (std::vector<WarningPolygon>{{{60, 179}, {61, 180}, {61, -179}, {60, 179}}}));
  EXPECT_TRUE(area.circles.empty());
  EXPECT_TRUE(area.geocodes.empty());
  struct Row {
    std::string text;
    std::optional<Instant> read;
  };
  for (Row const& row : {Row{"2569-11-21T06:00:00+07:00", at("2026-11-20T23:00:00Z")},
                         {"2399-11-21T06:00:00Z", at("2399-11-21T06:00:00Z")},
                         {"2400-11-21T06:00:00Z", at("1857-11-21T06:00:00Z")},
                         {"\n 2026-11-21T06:00:00-00:00 ", at("2026-11-21T06:00:00Z")},
                         {"2026-11-30T24:00:00+01:00", at("2026-11-30T23:00:00Z")},
                         {"2026-11-30T24:00:01+01:00", {}},
                         {"tomorrow", {}},
                         {"", {}}}) {
    CapBlock block;
    block.onset = row.text;
    EXPECT_EQ(blockOf(block).onset, row.read) << row.text;
  }
}

/// What follows the declaration of its encoding is the same in all of them.
TEST(CapReader, ReadsDocumentsAsTheyAreSent) {
  std::string const rest = "<alert><identifier>K\u00fc</identifier></alert>";
  auto const wide = [](std::string_view text) {
    std::string units = "\xFF\xFE";
    for (char const c : text) (units += c) += '\0';
    return units;
  };
  std::string const declared16 = R"(<?xml version="1.0" encoding="UTF-16"?>)";
  std::string const ascii = "<alert><identifier>Ku</identifier></alert>";
  using Row = std::pair<std::string, std::string>;
  for (auto const& [body, identifier] :
       {Row{rest, "K\u00fc"}, Row{"\xEF\xBB\xBF" + rest, "K\u00fc"}, Row{declared16 + rest, "K\u00fc"},
        Row{wide(declared16 + ascii), "Ku"}, Row{wide(ascii), "Ku"},
        Row{"\r\n <?xml version=\"1.0\"?>" + rest, "K\u00fc"}, Row{rest + std::string("\n\0", 2), "K\u00fc"},
        Row{"\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"windows-1252\"?>" + rest, "K\u00fc"},
        Row{"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><alert><identifier>K\xFC</identifier></alert>",
            "K\u00fc"},
        Row{"<alert><identifier><![CDATA[K<\u00fc]]></identifier></alert>", "K<\u00fc"}}) {
    auto const read = parseCap(body);
    ASSERT_TRUE(read) << read.error() << "\n" << body;
    EXPECT_EQ(read->identifier, identifier);
  }
  EXPECT_FALSE(parseCap("<alert><identifier>K\xFC</identifier></alert>"));
  EXPECT_FALSE(parseCap(std::string("<alert>\0</alert>", 16)));
}

/// Texts that bodies in other encodings name; what stands there is the issuer's own.
TEST(CapReader, ReadsTheEncodingThatADocumentDeclares) {
  struct Row {
    char const *encoding, *bytes, *text;
  };
  for (Row const& row :
       {Row{"windows-1250", "Siln\xFD v\xEDtr", "Silný vítr"},
        Row{"WINDOWS-1251", "\xC2\xE5\xF2\xE5\xF0", "Ветер"},
        Row{"windows-1252", "S\xE3o Jo\xE3o \x96 \x93vento\x94", "São João – “vento”"},
        Row{"iso-8859-1", "c\x92\x65st l\xE0", "c’est là"},
        Row{"ISO-8859-2", "Poryw \xB6niegu", "Poryw śniegu"},
        Row{"iso-8859-7", "\xC1\xED\xE5\xEC\xEF\xF2", "Ανεμος"}, Row{"ISO-8859-15", "100 \xA4", "100 €"},
        Row{"windows-1256", "\xD1\xED\xC7\xCD", "رياح"}, Row{"koi8-r", "\xF7\xC5\xD4\xC5\xD2", "Ветер"},
        Row{"TIS-620", "\xBD\xB9", "ฝน"}, Row{"GB2312", "\xB1\xA9\xD3\xEA \x81\x30\x81\x30", "暴雨 "},
        Row{"gbk", "\xB4\xF3\xEC\x46", "大霧"}, Row{"Big5", "\xA4\x6A\xAB\x42", "大雨"},
        Row{"Shift_JIS", "\x91\xE5\x89\x4A", "大雨"}, Row{"EUC-JP", "\xC2\xE7\xB1\xAB", "大雨"},
        Row{"euc-kr", "\xC8\xA3\xBF\xEC", "호우"}, Row{"us-ascii", "Wind", "Wind"},
        Row{"gb2312", "\xB1\xA9\xD3", "暴\uFFFD"}, Row{"utf-8", "Größe", "Größe"}}) {
    for (char const quote : {'"', '\''}) {
      std::string const head =
          std::string("<?xml version='1.0' encoding=") + quote + row.encoding + quote + " ?>";
      auto const read =
          parseCap(head + "<alert><info><description>" + row.bytes + "</description></info></alert>");
      ASSERT_TRUE(read) << row.encoding << ": " << read.error();
      EXPECT_EQ(read->infos[0].description, row.text) << row.encoding;
    }
  }
}

/// Nobody opens a file or a table because a document says so.
TEST(CapReader, RefusesEncodingsThatItDoesNotKnow) {
  for (char const* const encoding : {"utf-7", "ibm037", "../../etc/passwd", "iso-8859-1/../x", "iso-8859-99",
                                     "windows-125", "iso-2022-jp", "utf-32", "windows-1252,version=1"}) {
    auto const read = parseCap("<?xml version='1.0' encoding='" + std::string(encoding) + "'?><alert/>");
    ASSERT_FALSE(read) << encoding;
  }
  for (char const* const cut :
       {"<?xml version='1.0' encoding='gbk", "<?xml encoding", "<?xml encoding='gbk'?>\x81"})
    EXPECT_FALSE(parseCap(cut)) << cut;
}

TEST(CapReader, PassesOverSignaturesAndWhatItDoesNotKnow) {
  std::string const signature =
      "<ds:Signature xmlns:ds=\"http://www.w3.org/2000/09/xmldsig#\"><ds:info><identifier>stolen</identifier>"
      "</ds:info></ds:Signature><extension><info><event>stolen</event></info></extension>";
  CapAlert const message =
      messageOf("<?xml-stylesheet href=\"a.xsl\"?>" + capMessage({{}}, signature).substr(39));
  EXPECT_EQ(message.identifier, "2.49.0.0.1");
  EXPECT_EQ(message.infos.size(), 1U);
}

std::string corners(std::size_t points) {
  std::string text;
  for (std::size_t i = 0; i < points; ++i) text += "1,1 ";
  return text;
}

std::string ring(std::size_t points) {
  return "<polygon>" + corners(points) + "</polygon>";
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

TEST(CapReader, RefusesWhatIsNoMessageOrTooMuch) {
  auto const nested = [](int levels) {
    std::string open = "<alert>";
    std::string close = "</alert>";
    for (int i = 1; i < levels; ++i) open += "<x>", close = "</x>" + close;
    return open + close;
  };
  EXPECT_TRUE(parseCap(nested(64)));
  EXPECT_TRUE(parseCap("<alert><info><area>" + ring(60'000) + ring(40'000) + "</area></info></alert>"));
  struct Row {
    std::string body, reason;
  };
  for (Row const& row :
       {Row{nested(65), "nested too deeply"},
        {"<alert><info><area>" + ring(60'000) + ring(40'001) + "</area></info></alert>", "too many points"},
        {"<html><alert/></html>", "it is not an alert"},
        {"<html/>", "it is not an alert"},
        {"<alert>" + repeated("<info/>", kMostCapParts) + "</alert>", "too many parts"},
        {"<!DOCTYPE alert [<!ENTITY a \"b\">]><alert>&a;</alert>", "declares entities"},
        {"<alert><info></alert>", "mismatched tag"},
        {"", "no element found"},
        {"{\"alert\":{}}", "it is not an alert"},
        {"{\"alert\":[1]", "could not be read"},
        {"{\"identifier\":\"1\",\"info\":[{}" + repeated(",{}", kMostCapParts) + "]}", "too many parts"},
        {R"({"identifier":"1","info":[{"area":[{"polygon":[")" + corners(60'000) + R"(",")" +
             corners(40'001) + R"("]}]}]})",
         "too many points"},
        {std::string(kLongestCapMessage + 1, ' '), "too long"}}) {
    auto const message = parseCap(row.body);
    ASSERT_FALSE(message) << row.body.substr(0, 60);
    EXPECT_THAT(message.error(), HasSubstr(row.reason));
  }
}

TEST(CapReader, ReadsMessagesInJsonAlike) {
  std::string const members =
      R"({"identifier":"2.49","sender":"a@b.example","sent":"2026-11-21T06:30:00+01:00","msgType":"Alert",)"
      R"("references":null,"code":[7],"info":[{"language":"de-DE","event":"Sturm","description":" A\n\u009bB ",)"
      R"("onset":"2026-11-21T06:00:00Z","responseType":["Prepare"],"parameter":[{"valueName":"awareness_level",)"
      R"("value":"3; orange; Severe"},{"valueName":5}],"area":[{"areaDesc":"Küste","altitude":3280.8,)"
      R"("geocode":[{"value":"DE1","valueName":"EMMA_ID"}],"polygon":["50,8 51,8 51,9 50,8",""],"circle":null}]}]})";
  for (std::string const& body : {members, "{\"uuid\":\"1\",\"alert\":" + members + "}"}) {
    CapAlert const message = messageOf(" " + body);
    EXPECT_EQ(message.identifier, "2.49");
    EXPECT_EQ(message.sent, at("2026-11-21T05:30:00Z"));
    ASSERT_EQ(message.infos.size(), 1U);
    CapInfo const& info = message.infos[0];
    EXPECT_EQ(info.description, " A\nB ");
    EXPECT_EQ(info.onset, at("2026-11-21T06:00:00Z"));
    EXPECT_EQ(valueOf(info.parameters, "awareness_level"), "3; orange; Severe");
    EXPECT_EQ(
        info.areas,
        (std::vector<CapArea>{{"Küste", {{{50, 8}, {51, 8}, {51, 9}, {50, 8}}}, {}, {{"EMMA_ID", "DE1"}}}}));
  }
}

}  // namespace
}  // namespace nimbara
