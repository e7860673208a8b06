#include "layers/layer_table.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <regex>
#include <sstream>
#include <string_view>

namespace vantrel::testing {
namespace {

/// Third-party headers and the one folder that may include them.
struct HiddenHeader {
  std::string_view prefix;
  std::string_view folder;
};
constexpr std::array kHiddenHeaders{
    HiddenHeader{"png.h", "platform/image"},    HiddenHeader{"jpeglib.h", "platform/image"},
    HiddenHeader{"jerror.h", "platform/image"}, HiddenHeader{"tiff", "platform/image"},
    HiddenHeader{"libheif/", "platform/image"}, HiddenHeader{"lcms2", "platform/image"},
    HiddenHeader{"zlib.h", "platform/image"},   HiddenHeader{"libav", "platform/movie"},
    HiddenHeader{"libsw", "platform/movie"},    HiddenHeader{"zimg", "platform/movie"},
    HiddenHeader{"SDL", "platform/player"},
};

/// Sources of folders whose row does not list Qt Widgets include none of these.
constexpr std::string_view kWidgetHeaders =
    "^Q(Widget|Application|MainWindow|Dialog|FileDialog|MessageBox|LineEdit|Label|PushButton|Menu|"
    "MenuBar|ToolBar|Action|ScrollArea|Slider|Frame|BoxLayout|HBoxLayout|VBoxLayout|Style)$";

std::vector<std::string> cells(const std::string& line) {
  std::vector<std::string> result;
  std::istringstream stream(line);
  std::string cell;
  std::getline(stream, cell, '|');
  while (std::getline(stream, cell, '|'))
    result.push_back(cell);
  return result;
}

std::vector<std::string> quotedWords(const std::string& cell) {
  static const std::regex word("`([^`]+)`");
  std::vector<std::string> result;
  for (std::sregex_iterator i(cell.begin(), cell.end(), word), end; i != end; ++i) {
    result.push_back((*i)[1]);
  }
  return result;
}

std::vector<std::string> includes(const std::string& source, const std::regex& pattern) {
  std::vector<std::string> result;
  std::istringstream stream(source);
  std::string line;
  std::smatch match;
  while (std::getline(stream, line)) {
    if (std::regex_search(line, match, pattern)) result.push_back(match[1]);
  }
  return result;
}

}  // namespace

std::map<std::string, LayerRow> parseLayerTable(const std::string& markdown) {
  static const std::regex row(R"(^\|\s*\d+\s*\|)");
  std::map<std::string, LayerRow> table;
  std::istringstream stream(markdown);
  std::string line;
  while (std::getline(stream, line)) {
    if (!std::regex_search(line, row)) continue;
    const std::vector<std::string> columns = cells(line);
    LayerRow layer;
    layer.level = std::stoi(columns.at(0));
    layer.folder = quotedWords(columns.at(1)).at(0);
    layer.mayUseWidgets = columns.at(3).find("Qt Widgets") != std::string::npos;
    if (columns.at(3).find("everything above") != std::string::npos) {
      for (const auto& [folder, above] : table) {
        layer.mayUse.insert(folder);
        layer.mayUseWidgets |= above.mayUseWidgets;
      }
    }
    for (const std::string& folder : quotedWords(columns.at(3)))
      layer.mayUse.insert(folder);
    table[layer.folder] = layer;
  }
  return table;
}

std::vector<std::string> quotedIncludes(const std::string& source) {
  static const std::regex pattern(R"re(^\s*#\s*include\s*"([^"]+)")re");
  return includes(source, pattern);
}

std::vector<std::string> angledIncludes(const std::string& source) {
  static const std::regex pattern(R"(^\s*#\s*include\s*<([^>]+)>)");
  return includes(source, pattern);
}

std::string folderOf(const std::string& path, const std::map<std::string, LayerRow>& table) {
  std::string best;
  for (const auto& [folder, layer] : table) {
    if (path.rfind(folder + "/", 0) == 0 && folder.size() > best.size()) best = folder;
  }
  return best;
}

std::vector<std::string> brokenIncludes(const std::string& path, const std::string& source,
                                        const std::map<std::string, LayerRow>& table) {
  static const std::regex widgets{std::string(kWidgetHeaders)};
  const std::string folder = folderOf(path, table);
  if (folder.empty()) return {path + ": lies in no folder of the table"};
  const LayerRow& layer = table.at(folder);
  std::vector<std::string> broken;
  for (const std::string& include : quotedIncludes(source)) {
    if (include.find('/') == std::string::npos) continue;
    const std::string target = folderOf(include, table);
    if (target != folder && layer.mayUse.count(target) == 0) {
      broken.push_back(path + ": may not include \"" + include + "\"");
    }
  }
  for (const std::string& include : angledIncludes(source)) {
    for (const HiddenHeader& hidden : kHiddenHeaders) {
      if (include.rfind(hidden.prefix, 0) == 0 && folder != hidden.folder) {
        broken.push_back(path + ": may not include <" + include + ">");
      }
    }
    if (!layer.mayUseWidgets && std::regex_match(include, widgets)) {
      broken.push_back(path + ": may not include <" + include + ">");
    }
  }
  return broken;
}

std::set<std::string> privateHeaders(const std::map<std::string, std::string>& sources) {
  std::set<std::string> found;
  const auto isPrivate = [&found](const std::string& source) {
    for (const std::string& include : angledIncludes(source)) {
      for (const HiddenHeader& hidden : kHiddenHeaders) {
        if (include.rfind(hidden.prefix, 0) == 0) return true;
      }
    }
    const std::vector<std::string> quoted = quotedIncludes(source);
    return std::any_of(quoted.begin(), quoted.end(),
                       [&found](const std::string& include) { return found.count(include) != 0; });
  };
  for (size_t before = 1, after = 0; before != after;) {
    before = found.size();
    for (const auto& [path, source] : sources) {
      const bool isHeader = path.size() > 2 && path.compare(path.size() - 2, 2, ".h") == 0;
      if (isHeader && isPrivate(source)) found.insert(path);
    }
    after = found.size();
  }
  return found;
}

std::string readText(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

}  // namespace vantrel::testing
