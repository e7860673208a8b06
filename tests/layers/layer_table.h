#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vantrel::testing {

/// One row of the table in src/README.md.
struct LayerRow {
  int level = 0;
  std::string folder;
  /// Folders that it may use; its own is not among them.
  std::set<std::string> mayUse;
  bool mayUseWidgets = false;
};

/// The rows of the level table in a Markdown text, by folder.
std::map<std::string, LayerRow> parseLayerTable(const std::string& markdown);

/// The paths that a source text includes: between quotes, or between angle brackets.
std::vector<std::string> quotedIncludes(const std::string& source);
std::vector<std::string> angledIncludes(const std::string& source);

/// The longest folder of the table that `path`, relative to src/, lies in; empty if none.
std::string folderOf(const std::string& path, const std::map<std::string, LayerRow>& table);

/// What is wrong with the includes of one source, one line each.
std::vector<std::string> brokenIncludes(const std::string& path, const std::string& source,
                                        const std::map<std::string, LayerRow>& table);

/// The headers, among source texts by path, that include a third-party header, directly or through
/// one another: they are private to their folder.
std::set<std::string> privateHeaders(const std::map<std::string, std::string>& sources);

std::string readText(const std::filesystem::path& path);

}  // namespace vantrel::testing
