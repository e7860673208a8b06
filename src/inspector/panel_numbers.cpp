#include "inspector/panel_numbers.h"

#include <cmath>

#include "platform/desktop/formatting.h"

namespace vantrel::PanelNumbers {

QString bitrate(double megabitsPerSecond) {
  return CropFormatting::fixed(megabitsPerSecond, 2) + QStringLiteral(" Mbps");
}

QString quality(double quality) {
  return QString::number(std::llround(quality * 100)) + u'%';
}

}  // namespace vantrel::PanelNumbers
