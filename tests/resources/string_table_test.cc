#include "src/resources/string_table.h"

#include <gtest/gtest.h>

#include <string>

#include "sim/platform/sim_platform.h"
#include "src/resources/string_table_data.h"

namespace zintra {
namespace {

TEST(StringTableTest, EnglishTextsAreTheQuotedOnes) {
  StringTable en(Language::kEnglish);
  EXPECT_EQ(en.Load(2), "Zintra");
  EXPECT_EQ(en.Load(504), "Do not show this message again");
  EXPECT_EQ(en.Load(500), "OK");
  EXPECT_EQ(en.Load(140), "Mail Items");
  EXPECT_EQ(en.Load(160), "Process email: ");
  EXPECT_EQ(en.Load(186), "Audit task update item: ");
  EXPECT_EQ(en.Load(2518), "Nothing");
  EXPECT_EQ(en.Load(3000), "You must be running Outlook 2000 or later to use this add-in.");
}

TEST(StringTableTest, RowsAreSortedAndEveryLanguageHasEveryText) {
  // Item-kind names and task descriptions are looked up by arithmetic on the id.
  for (int32_t id = 135; id <= 186; ++id) {
    EXPECT_EQ(StringTable::Contains(id), id <= 150 || id >= 155) << id;
  }
  int32_t previous = -1;
  for (const auto& row : resources::StringRows()) {
    EXPECT_LT(previous, row.id);
    previous = row.id;
    EXPECT_STRNE(row.french, "") << row.id;
    EXPECT_STRNE(row.canadian_french, "") << row.id;
    // Substitution markers must survive translation.
    for (const char* marker : {"|1", "|2"}) {
      bool in_english = std::string(row.english).find(marker) != std::string::npos;
      EXPECT_EQ(in_english, std::string(row.french).find(marker) != std::string::npos) << row.id;
      EXPECT_EQ(in_english, std::string(row.canadian_french).find(marker) != std::string::npos)
          << row.id;
    }
  }
}

TEST(StringTableTest, LanguagesDifferWhereTheyShould) {
  EXPECT_EQ(StringTable(Language::kFrench).Load(50), "Dossiers publics");
  EXPECT_EQ(StringTable(Language::kFrench).Load(1203), "E-mail");
  EXPECT_EQ(StringTable(Language::kCanadianFrench).Load(1203), "Courriel");
  EXPECT_EQ(StringTable(Language::kCanadianFrench).Load(2), "Zintra");
  EXPECT_EQ(StringTable(Language::kFrench).Load(99999), "");
}

TEST(StringTableTest, FormatSubstitutesMarkersOnce) {
  StringTable en;
  EXPECT_EQ(en.Format(1209, {"Ann Lee", "3/4/2024"}), "Letter to Ann Lee on 3/4/2024");
  EXPECT_EQ(StringTable(Language::kFrench).Format(2852, {"Bob", "lundi"}),
            "Modifié par Bob le lundi");
  // An argument holding a marker is not expanded again; a missing argument leaves its
  // marker in place.
  EXPECT_EQ(StringTable::Substitute("|1 and |2", {"|2"}), "|2 and |2");
  EXPECT_EQ(StringTable::Substitute("a|b||1", {"x"}), "a|b|x");
}

TEST(StringTableTest, FollowsThePlatformsUserInterfaceLanguage) {
  sim::SimPlatform platform;
  EXPECT_EQ(StringTable::ForUserInterface(platform).language(), Language::kEnglish);
  platform.SetUserInterfaceLanguage(0x0C0C);
  EXPECT_EQ(StringTable::ForUserInterface(platform).Load(1203), "Courriel");
  platform.SetUserInterfaceLanguage(0x0411);
  EXPECT_EQ(StringTable::ForUserInterface(platform).Load(1203), "Email");
}

struct LcidCase {
  int32_t lcid;
  Language language;
};

class LanguageFromLcidTest : public testing::TestWithParam<LcidCase> {};

TEST_P(LanguageFromLcidTest, PicksTheTable) {
  EXPECT_EQ(LanguageFromLcid(GetParam().lcid), GetParam().language);
}

INSTANTIATE_TEST_SUITE_P(Lcids, LanguageFromLcidTest,
                         testing::Values(LcidCase{0x0409, Language::kEnglish},
                                         LcidCase{0x040C, Language::kFrench},
                                         LcidCase{0x080C, Language::kFrench},
                                         LcidCase{0x0C0C, Language::kCanadianFrench},
                                         LcidCase{0x10C0C, Language::kCanadianFrench},
                                         LcidCase{0, Language::kEnglish}));

}  // namespace
}  // namespace zintra
