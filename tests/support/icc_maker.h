#pragma once

#include <lcms2.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace vantrel::testing {

/// The bytes of `profile`, which is closed.
inline std::vector<uint8_t> takeProfileBytes(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::vector<uint8_t> bytes(size);
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  return bytes;
}

inline void describe(cmsHPROFILE profile, const std::wstring& name) {
  cmsMLU* text = cmsMLUalloc(nullptr, 1);
  cmsMLUsetWide(text, "en", "US", name.c_str());
  cmsWriteTag(profile, cmsSigProfileDescriptionTag, text);
  cmsMLUfree(text);
}

/// A wide RGB space: gamma 563/256, the primaries of Rec. 709 but a far green, white D65.
inline std::vector<uint8_t> wideRgbProfile(const std::wstring& name = L"Wide RGB") {
  const cmsCIExyY white = {0.3127, 0.3290, 1};
  const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}};
  cmsToneCurve* gamma = cmsBuildGamma(nullptr, 563.0 / 256);
  cmsToneCurve* curves[] = {gamma, gamma, gamma};
  cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
  cmsFreeToneCurve(gamma);
  describe(profile, name);
  return takeProfileBytes(profile);
}

/// Grey with a power curve, white D50.
inline std::vector<uint8_t> grayProfile(double gamma) {
  cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
  cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
  cmsFreeToneCurve(curve);
  describe(profile, L"Grey");
  return takeProfileBytes(profile);
}

/// An ink space without colours: lightness falls with the mean of three inks and with black.
inline std::vector<uint8_t> inkProfile() {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 4.3);
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
  cmsStage* table = cmsStageAllocCLut16bit(nullptr, 9, 4, 3, nullptr);
  cmsStageSampleCLut16bit(
      table,
      [](const cmsUInt16Number in[], cmsUInt16Number out[], void*) -> cmsInt32Number {
        const double black = in[3] / 65535.0;
        const double mean = (in[0] + in[1] + in[2]) / (3 * 65535.0);
        const double lightness = (1 - mean) * (1 - black);
        out[0] = static_cast<cmsUInt16Number>(std::lround(lightness * 65535.0));
        out[1] = out[2] = 0x8080;
        return 1;
      },
      nullptr, 0);
  cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocToneCurves(nullptr, 4, nullptr));
  cmsPipelineInsertStage(pipeline, cmsAT_END, table);
  cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocToneCurves(nullptr, 3, nullptr));
  cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
  cmsPipelineFree(pipeline);
  describe(profile, L"Inks");
  return takeProfileBytes(profile);
}

}  // namespace vantrel::testing
