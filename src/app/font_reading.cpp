#include "app/font_reading.h"

#ifdef VANTREL_HAS_FONTCONFIG
#include <fontconfig/fontconfig.h>

#include <QFontDatabase>
#include <clocale>
#include <system_error>
#include <tuple>
#include <utility>
#endif

namespace vantrel {

std::jthread readFontsAhead([[maybe_unused]] std::future<void> application) {
#ifdef VANTREL_HAS_FONTCONFIG
  // The toolkit sets it next; nobody may while another thread reads it.
  std::setlocale(LC_ALL, "");
  try {
    return std::jthread([application = std::move(application)] {
      FcInit();
      application.wait();
      std::ignore = QFontDatabase::hasFamily({});
    });
  } catch (const std::system_error&) {
    // They are read when they are asked for.
  }
#endif
  return {};
}

}  // namespace vantrel
