#pragma once

// Private to this folder: owners for the handles of lcms2.

#include <lcms2.h>

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

namespace vantrel {

template <auto Close>
struct LcmsClose {
  template <typename Handle>
  void operator()(Handle* handle) const {
    Close(handle);
  }
};

using LcmsContext = std::unique_ptr<std::remove_pointer_t<cmsContext>, LcmsClose<cmsDeleteContext>>;
using LcmsProfile = std::unique_ptr<std::remove_pointer_t<cmsHPROFILE>, LcmsClose<cmsCloseProfile>>;
using LcmsTransform =
    std::unique_ptr<std::remove_pointer_t<cmsHTRANSFORM>, LcmsClose<cmsDeleteTransform>>;

/// A context of one's own: nothing global is read or changed, and its error handler, the default
/// one of a new context, says nothing. It must outlive what is made in it. Throws std::bad_alloc.
[[nodiscard]] inline LcmsContext makeLcmsContext() {
  LcmsContext context(cmsCreateContext(nullptr, nullptr));
  if (!context) throw std::bad_alloc();
  return context;
}

/// The profile in these bytes; null when it cannot be read.
[[nodiscard]] inline LcmsProfile openLcmsProfile(const LcmsContext& context,
                                                 const std::vector<uint8_t>& bytes) {
  return LcmsProfile(cmsOpenProfileFromMemTHR(context.get(), bytes.data(),
                                              static_cast<cmsUInt32Number>(bytes.size())));
}

/// The bytes of a profile made in memory, described by a name in ASCII and with a fixed date, so
/// that equal profiles have equal bytes. Empty when lcms2 cannot make them.
[[nodiscard]] std::vector<uint8_t> namedProfile(LcmsProfile profile, const std::string& name);

// Colours inside both gamuts keep their exact values, which a tool for exact pixels owes its user;
// profiles made of primaries know no other intent. Black point compensation keeps the shadows of
// print profiles from turning grey.
constexpr cmsUInt32Number kRenderingIntent = INTENT_RELATIVE_COLORIMETRIC;
constexpr cmsUInt32Number kTransformFlags = cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_NOCACHE;

}  // namespace vantrel
