#include "inspector/export_footer_text.h"

#include <QCoreApplication>
#include <cmath>

#include "controls/panel_text.h"

namespace vantrel::ExportFooterText {
namespace {

constexpr double kFinalizingFrom = 0.99;

QString tr(const char* text) {
  return QCoreApplication::translate("vantrel::CropExportFooter", text);
}

}  // namespace

QString phase(double progress, bool indeterminate) {
  if (indeterminate) return tr("Exporting…");
  if (progress >= kFinalizingFrom) return tr("Finalizing…");
  return tr("Exporting") + u' ' + QString::number(static_cast<int>(std::trunc(progress * 100))) +
         u'%';
}

QString status(std::optional<CropExportState::Message> message, bool loaded, int64_t outputWidth,
               int64_t outputHeight, const QString& encodingName) {
  if (message) return CropExportState::text(*message);
  if (!loaded) return tr("Ready");
  return PanelText::pixelSize(outputWidth, outputHeight) + QStringLiteral(" px · ") + encodingName;
}

}  // namespace vantrel::ExportFooterText
