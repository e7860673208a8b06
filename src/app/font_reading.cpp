#include "app/font_reading.h"

#ifdef VANTREL_HAS_FONTCONFIG
#include <fontconfig/fontconfig.h>

#include <clocale>
#include <system_error>
#endif

namespace vantrel {

std::jthread readFontsAhead() {
#ifdef VANTREL_HAS_FONTCONFIG
  // The toolkit sets it next; nobody may while another thread reads it.
  std::setlocale(LC_ALL, "");
  try {
    return std::jthread([] { FcInit(); });
  } catch (const std::system_error&) {
    // They are read when they are asked for.
  }
#endif
  return {};
}

}  // namespace vantrel
