#include "platform/image/color_profile.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <string_view>

#include "platform/image/lcms_ptr.h"

namespace vantrel {
namespace {

// Byte ranges of the ICC header (ICC.1:2022, table 17).
constexpr size_t kCreationDate = 24;
constexpr size_t kCreationDateEnd = 36;

constexpr const char* kSrgbName = "sRGB IEC61966-2.1";

cmsColorSpaceSignature colorSpaceOf(ColorModel model) {
  switch (model) {
    case ColorModel::Gray:
      return cmsSigGrayData;
    case ColorModel::Cmyk:
      return cmsSigCmykData;
    case ColorModel::Lab:
      return cmsSigLabData;
    case ColorModel::Rgb:
    case ColorModel::Indexed:
      break;
  }
  return cmsSigRgbData;
}

cmsUInt32Number sampleFormatOf(ColorModel model) {
  switch (model) {
    case ColorModel::Gray:
      return TYPE_GRAY_16;
    case ColorModel::Cmyk:
      return TYPE_CMYK_16;
    case ColorModel::Lab:
      return TYPE_Lab_16;
    case ColorModel::Rgb:
    case ColorModel::Indexed:
      break;
  }
  return TYPE_RGB_16;
}

/// Device links, named colours and effects do not describe the pixels of a picture; of abstract
/// profiles only those of plain Lab do.
bool describesPixels(cmsHPROFILE profile, ColorModel model) {
  switch (cmsGetDeviceClass(profile)) {
    case cmsSigAbstractClass:
      return model == ColorModel::Lab;
    case cmsSigInputClass:
    case cmsSigDisplayClass:
    case cmsSigOutputClass:
    case cmsSigColorSpaceClass:
      return true;
    default:
      return false;
  }
}

void appendUtf8(std::string& text, uint32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
    return;
  }
  const int tails = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  static constexpr uint8_t kLead[] = {0, 0xC0, 0xE0, 0xF0};
  text += static_cast<char>(kLead[tails] | (code >> (6 * tails)));
  for (int shift = 6 * (tails - 1); shift >= 0; shift -= 6) {
    text += static_cast<char>(0x80 | ((code >> shift) & 0x3F));
  }
}

/// lcms hands UTF-16 units over one by one, whatever the width of wchar_t. Lone surrogates are left
/// out.
std::string utf8FromUnits(std::wstring_view units) {
  std::string text;
  for (size_t i = 0; i < units.size(); ++i) {
    auto code = static_cast<uint32_t>(units[i]);
    if (code >= 0xD800 && code < 0xDC00 && i + 1 < units.size()) {
      const auto low = static_cast<uint32_t>(units[i + 1]);
      if (low < 0xDC00 || low > 0xDFFF) continue;
      code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
      ++i;
    }
    if (code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) continue;
    appendUtf8(text, code);
  }
  return text;
}

std::optional<std::string> descriptionOf(cmsHPROFILE profile) {
  const cmsUInt32Number bytes =
      cmsGetProfileInfo(profile, cmsInfoDescription, "en", "US", nullptr, 0);
  std::wstring units(bytes / sizeof(wchar_t), L'\0');
  if (units.empty()) return {};
  cmsGetProfileInfo(profile, cmsInfoDescription, "en", "US", units.data(), bytes);
  units.resize(std::min(units.size(), units.find(L'\0')));
  std::string name = utf8FromUnits(units);
  name.resize(name.find_last_not_of(" \t\r\n") + 1);
  if (name.empty()) return {};
  return name;
}

std::vector<uint8_t> makeSrgbProfile() {
  const LcmsContext context = makeLcmsContext();
  std::vector<uint8_t> bytes =
      namedProfile(LcmsProfile(cmsCreate_sRGBProfileTHR(context.get())), kSrgbName);
  if (bytes.empty()) throw std::bad_alloc();
  return bytes;
}

}  // namespace

std::vector<uint8_t> namedProfile(LcmsProfile profile, const std::string& name) {
  if (!profile) return {};
  const std::unique_ptr<cmsMLU, LcmsClose<cmsMLUfree>> text(
      cmsMLUalloc(cmsGetProfileContextID(profile.get()), 1));
  cmsUInt32Number size = 0;
  if (!text || !cmsMLUsetASCII(text.get(), "en", "US", name.c_str()) ||
      !cmsWriteTag(profile.get(), cmsSigProfileDescriptionTag, text.get()) ||
      !cmsSaveProfileToMem(profile.get(), nullptr, &size)) {
    return {};
  }
  std::vector<uint8_t> bytes(size);
  if (!cmsSaveProfileToMem(profile.get(), bytes.data(), &size)) return {};
  // 1 January 2000, 00:00:00, as six big-endian 16-bit numbers.
  static constexpr uint8_t kDate[kCreationDateEnd - kCreationDate] = {0x07, 0xD0, 0, 1, 0, 1};
  std::copy(std::begin(kDate), std::end(kDate), bytes.begin() + kCreationDate);
  return bytes;
}

std::optional<std::string> colorProfileName(const Bitmap& bitmap) {
  const std::vector<uint8_t>& bytes = bitmap.color().iccProfile;
  if (bytes.empty()) {
    switch (bitmap.layout().model) {
      case ColorModel::Rgb:
      case ColorModel::Indexed:
        return kSrgbName;
      case ColorModel::Gray:
        return "Generic Gray";
      case ColorModel::Cmyk:
        return "Generic CMYK";
      case ColorModel::Lab:
        return "Generic Lab";
    }
  }
  const LcmsContext context = makeLcmsContext();
  const LcmsProfile profile = openLcmsProfile(context, bytes);
  return profile ? descriptionOf(profile.get()) : std::nullopt;
}

bool profileFits(const std::vector<uint8_t>& iccProfile, ColorModel model) {
  const LcmsContext context = makeLcmsContext();
  const LcmsProfile profile = openLcmsProfile(context, iccProfile);
  if (!profile || cmsGetColorSpace(profile.get()) != colorSpaceOf(model) ||
      !describesPixels(profile.get(), model)) {
    return false;
  }
  // The header alone promises nothing: only a transform reads the tags that the pixels need.
  const LcmsProfile srgb(cmsCreate_sRGBProfileTHR(context.get()));
  const LcmsTransform transform(
      cmsCreateTransformTHR(context.get(), profile.get(), sampleFormatOf(model), srgb.get(),
                            TYPE_RGB_16, kRenderingIntent, kTransformFlags | cmsFLAGS_NOOPTIMIZE));
  return transform != nullptr;
}

const std::vector<uint8_t>& srgbProfile() {
  static const std::vector<uint8_t> profile = makeSrgbProfile();
  return profile;
}

std::array<uint8_t, 3> srgbColorIn(const std::vector<uint8_t>& iccProfile, double red, double green,
                                   double blue) {
  std::array<double, 3> color = {red, green, blue};
  if (profileFits(iccProfile, ColorModel::Rgb)) {
    const LcmsContext context = makeLcmsContext();
    const LcmsProfile srgb(cmsCreate_sRGBProfileTHR(context.get()));
    const LcmsProfile target = openLcmsProfile(context, iccProfile);
    const LcmsTransform transform(
        cmsCreateTransformTHR(context.get(), srgb.get(), TYPE_RGB_DBL, target.get(), TYPE_RGB_DBL,
                              kRenderingIntent, kTransformFlags | cmsFLAGS_NOOPTIMIZE));
    const std::array<double, 3> from = color;
    if (transform) cmsDoTransform(transform.get(), from.data(), color.data(), 1);
  }
  std::array<uint8_t, 3> result{};
  std::transform(color.begin(), color.end(), result.begin(), [](double channel) {
    return static_cast<uint8_t>(std::lround(std::clamp(channel, 0.0, 1.0) * 255));
  });
  return result;
}

}  // namespace vantrel
