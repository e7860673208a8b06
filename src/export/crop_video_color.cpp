#include "export/crop_video_color.h"

#include <algorithm>
#include <span>

namespace vantrel {
namespace {

struct Name {
  int code = 0;
  const char* text = nullptr;
};

constexpr const char* kPq = "smpte2084";
constexpr const char* kHlg = "arib-std-b67";

constexpr Name kPrimaries[] = {
    {1, "bt709"},     {4, "bt470m"},    {5, "bt470bg"},  {6, "smpte170m"},
    {7, "smpte240m"}, {8, "film"},      {9, "bt2020"},   {10, "smpte428"},
    {11, "smpte431"}, {12, "smpte432"}, {22, "ebu3213"},
};
constexpr Name kTransferFunctions[] = {
    {1, "bt709"},         {4, "bt470m"},   {5, "bt470bg"},       {6, "smpte170m"},
    {7, "smpte240m"},     {8, "linear"},   {9, "log100"},        {10, "log316"},
    {11, "iec61966-2-4"}, {12, "bt1361e"}, {13, "iec61966-2-1"}, {14, "bt2020-10"},
    {15, "bt2020-12"},    {16, kPq},       {17, "smpte428"},     {18, kHlg},
};
constexpr Name kMatrices[] = {
    {0, "gbr"},
    {1, "bt709"},
    {4, "fcc"},
    {5, "bt470bg"},
    {6, "smpte170m"},
    {7, "smpte240m"},
    {8, "ycgco"},
    {9, "bt2020nc"},
    {10, "bt2020c"},
    {11, "smpte2085"},
    {12, "chroma-derived-nc"},
    {13, "chroma-derived-c"},
    {14, "ictcp"},
};

std::optional<std::string> nameOf(int code, std::span<const Name> names) {
  const auto found = std::find_if(names.begin(), names.end(),
                                  [code](const Name& one) { return one.code == code; });
  if (found == names.end()) return std::nullopt;
  return found->text;
}

int codeOf(const std::optional<std::string>& name, std::span<const Name> names) {
  const auto found =
      std::find_if(names.begin(), names.end(), [&](const Name& one) { return name == one.text; });
  return found == names.end() ? ColorTags::kUnspecified : found->code;
}

}  // namespace

CropVideoColor CropVideoColor::of(const ColorTags& tags) {
  return {nameOf(tags.primaries, kPrimaries), nameOf(tags.transfer, kTransferFunctions),
          nameOf(tags.matrix, kMatrices)};
}

ColorTags CropVideoColor::tags() const {
  return {codeOf(primaries, kPrimaries), codeOf(transferFunction, kTransferFunctions),
          codeOf(matrix, kMatrices)};
}

bool CropVideoColor::isHDR() const {
  return transferFunction == kPq || transferFunction == kHlg;
}

}  // namespace vantrel
