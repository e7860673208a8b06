#include <gmock/gmock.h>

#include "layers/layer_table.h"

namespace vantrel::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const fs::path kSource = fs::path(VANTREL_SOURCE_DIR) / "src";

constexpr const char* kTable =
    "| Level | Folder | Holds | May use |\n|---|---|---|---|\n"
    "| 0 | `low` | | nothing |\n"
    "| 0 | `low/deep` | | `low` |\n"
    "| 1 | `controls` | | `low/deep`, Qt Widgets |\n"
    "| 2 | `top` | | everything above |\n";

std::map<std::string, LayerRow> realTable() {
  return parseLayerTable(readText(kSource / "README.md"));
}

TEST(LayerTable, ReadsLevelsFoldersAndUses) {
  const auto table = parseLayerTable(kTable);
  ASSERT_EQ(table.size(), 4u);
  EXPECT_EQ(table.at("controls").level, 1);
  EXPECT_THAT(table.at("low").mayUse, IsEmpty());
  EXPECT_THAT(table.at("controls").mayUse, ElementsAre("low/deep"));
  EXPECT_THAT(table.at("top").mayUse, ElementsAre("controls", "low", "low/deep"));
}

TEST(LayerTable, AFileBelongsToItsDeepestFolder) {
  EXPECT_EQ(folderOf("low/deep/a.h", parseLayerTable(kTable)), "low/deep");
  EXPECT_EQ(folderOf("low/a.h", parseLayerTable(kTable)), "low");
  EXPECT_EQ(folderOf("lower/a.h", parseLayerTable(kTable)), "");
}

TEST(LayerTable, AnIncludeThatTheRowDoesNotListIsBroken) {
  const auto table = parseLayerTable(kTable);
  EXPECT_THAT(brokenIncludes("controls/a.cpp", "#include \"low/deep/b.h\"\n", table), IsEmpty());
  EXPECT_THAT(brokenIncludes("top/a.cpp", "#include \"top/a.h\"\n", table), IsEmpty());
  EXPECT_THAT(brokenIncludes("controls/a.cpp", "  #  include \"low/b.h\"\n", table),
              ElementsAre("controls/a.cpp: may not include \"low/b.h\""));
  EXPECT_THAT(brokenIncludes("low/a.cpp", "#include \"top/b.h\"\n", table),
              ElementsAre("low/a.cpp: may not include \"top/b.h\""));
  EXPECT_THAT(brokenIncludes("stray/a.cpp", "", table),
              ElementsAre("stray/a.cpp: lies in no folder of the table"));
}

TEST(LayerTable, CodecsStayBehindTheirFolderAndWidgetsWhereTheRowListsThem) {
  const auto table = parseLayerTable(kTable);
  EXPECT_THAT(brokenIncludes("low/a.cpp", "#include <png.h>\n", table),
              ElementsAre("low/a.cpp: may not include <png.h>"));
  EXPECT_THAT(brokenIncludes("low/a.cpp", "#include <QWidget>\n", table),
              ElementsAre("low/a.cpp: may not include <QWidget>"));
  EXPECT_THAT(brokenIncludes("controls/a.cpp", "#include <QWidget>\n", table), IsEmpty());
  EXPECT_THAT(brokenIncludes("top/a.cpp", "#include <QWidget>\n", table), IsEmpty());
}

TEST(LayerTable, AHeaderIsPrivateThroughWhatItIncludes) {
  EXPECT_THAT(privateHeaders({{"a.h", "#include <zlib.h>\n"},
                              {"b.h", "#include \"a.h\"\n"},
                              {"c.h", "#include \"b.h\"\n"},
                              {"d.h", "#include <vector>\n"},
                              {"e.cpp", "#include \"c.h\"\n"}}),
              ElementsAre("a.h", "b.h", "c.h"));
}

TEST(Layers, EachRowUsesOnlyLowerLevels) {
  const auto table = realTable();
  ASSERT_GT(table.size(), 5u);
  for (const auto& [folder, layer] : table) {
    for (const std::string& used : layer.mayUse) {
      ASSERT_EQ(table.count(used), 1u) << folder << " uses " << used << ", which is no folder";
      EXPECT_LT(table.at(used).level, layer.level) << folder << " uses " << used;
    }
  }
}

TEST(Layers, EachRowIsAFolderWithATarget) {
  for (const auto& [folder, layer] : realTable()) {
    EXPECT_TRUE(fs::exists(kSource / folder / "CMakeLists.txt")) << folder;
  }
}

/// Every header and source under src/, by its path from there.
std::map<std::string, std::string> realSources() {
  std::map<std::string, std::string> sources;
  for (const auto& entry : fs::recursive_directory_iterator(kSource)) {
    const fs::path& path = entry.path();
    if (path.extension() != ".h" && path.extension() != ".cpp") continue;
    sources[path.lexically_relative(kSource).generic_string()] = readText(path);
  }
  return sources;
}

TEST(Layers, NoIncludeBreaksTheTable) {
  const auto table = realTable();
  const auto sources = realSources();
  EXPECT_GT(sources.size(), 10u);
  for (const auto& [path, source] : sources) {
    EXPECT_THAT(brokenIncludes(path, source, table), IsEmpty());
  }
}

TEST(Layers, HeadersWithCodecsInThemStayInTheirFolder) {
  const auto table = realTable();
  const auto sources = realSources();
  const std::set<std::string> hidden = privateHeaders(sources);
  EXPECT_FALSE(hidden.empty());
  for (const auto& [path, source] : sources) {
    for (const std::string& include : quotedIncludes(source)) {
      EXPECT_TRUE(hidden.count(include) == 0 || folderOf(include, table) == folderOf(path, table))
          << path << " includes " << include;
    }
  }
}

}  // namespace
}  // namespace vantrel::testing
