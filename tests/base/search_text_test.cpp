#include "base/text/search_text.h"

#include "base/words/country_names.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct Row {
  std::string_view text;
  std::string_view folded;
};

TEST(SearchText, ForgetsCaseAccentsAndPunctuation) {
  for (Row const& row : {Row{"", ""},
                         Row{" \t\n ", ""},
                         Row{"-", ""},
                         Row{"Berlin", "berlin"},
                         Row{"  New   York ", "new york"},
                         Row{"São Paulo", "sao paulo"},
                         Row{"SÃO PAULO", "sao paulo"},
                         Row{"Sa\u0303o", "sao"},
                         Row{"Straßburg", "strassburg"},
                         Row{"Ærøskøbing", "aeroskobing"},
                         Row{"Łódź", "lodz"},
                         Row{"Đà Nẵng", "da nang"},
                         Row{"STRASSE", "strasse"},
                         Row{"łódz", "lodz"},
                         Row{"İzmir", "izmir"},
                         Row{"Iğdır", "igdir"},
                         Row{"Þórshöfn", "thorshofn"},
                         Row{"St. Louis", "st louis"},
                         Row{"D.C.", "dc"},
                         Row{"Xi’an", "xian"},
                         Row{"L'Aquila", "laquila"},
                         Row{"Aix-en-Provence", "aix en provence"},
                         Row{"Frankfurt (Oder)", "frankfurt oder"},
                         Row{"Bad\xFFWord", "bad word"},
                         Row{"\xC3", ""},
                         Row{std::string_view("a\0b", 3), "a b"}}) {
    EXPECT_EQ(searchFolded(row.text), row.folded) << row.text;
  }
}

TEST(SearchText, KeepsOtherScripts) {
  for (Row const& row : {Row{"東京", "東京"}, Row{"МОСКВА", "москва"}, Row{"서울", "서울"},
                         Row{"Αθήνα", "αθηνα"}, Row{"ﾄｳｷｮｳ", "トウキョウ"}, Row{"Ｔｏｋｙｏ", "tokyo"}}) {
    EXPECT_EQ(searchFolded(row.text), row.folded) << row.text;
  }
}

TEST(SearchText, IsItsOwnFoldedForm) {
  for (char const* const text : {"São Paulo", "Straßburg", "が", "서울", "Xi’an", "Đà Nẵng", "ﬁ"}) {
    std::string const once = searchFolded(text);
    EXPECT_EQ(searchFolded(once), once) << text;
  }
}

TEST(SearchText, IsCapitalizedAsNamesAre) {
  for (Row const& row :
       {Row{"", ""}, Row{"lisboa", "Lisboa"}, Row{"LISBOA", "Lisboa"}, Row{"münchen", "München"},
        Row{"big apple", "Big Apple"}, Row{"frankfurt am main", "Frankfurt am Main"}, Row{"la paz", "La Paz"},
        Row{"ústí nad labem", "Ústí nad Labem"}, Row{"москва", "Москва"}, Row{"東京", "東京"}}) {
    EXPECT_EQ(capitalized(row.text), row.folded) << row.text;
  }
}

TEST(CountryNames, ComeInTheLanguageAskedFor) {
  struct NameRow {
    std::string_view code;
    std::string_view language;
    std::string_view name;
  };
  for (NameRow const& row :
       {NameRow{"DE", "en", "Germany"}, NameRow{"de", "pt", "Alemanha"}, NameRow{"DE", "zh", "德国"},
        NameRow{"XK", "en", "Kosovo"}, NameRow{"QX", "en", "QX"}, NameRow{"", "en", ""},
        NameRow{"D", "en", ""}, NameRow{"DEU", "en", ""}, NameRow{"1_", "en", ""}}) {
    EXPECT_EQ(countryName(row.code, row.language), row.name) << row.code;
  }
}

}  // namespace
}  // namespace nimbara
