#include "inspector/export_footer_text.h"

#include <QCoreApplication>
#include <QStringList>
#include <cmath>

#include "controls/panel_text.h"
#include "platform/desktop/key_names.h"

namespace vantrel::ExportFooterText {
namespace {

constexpr double kFinalizingFrom = 0.99;

class Words final {
  Q_DECLARE_TR_FUNCTIONS(ExportFooterText)
};

}  // namespace

QString phase(double progress, bool indeterminate) {
  if (indeterminate) return Words::tr("Exporting…");
  if (progress >= kFinalizingFrom) return Words::tr("Finalizing…");
  return Words::tr("Exporting") + u' ' +
         QString::number(static_cast<int>(std::trunc(progress * 100))) + u'%';
}

QString status(std::optional<CropExportState::Message> message, bool loaded, int64_t outputWidth,
               int64_t outputHeight, const QString& encodingName) {
  if (message) return CropExportState::text(*message);
  if (!loaded) return Words::tr("Ready");
  return PanelText::pixelSize(outputWidth, outputHeight) + QStringLiteral(" px · ") + encodingName;
}

QString help() {
  QString zoom = Words::tr("Zoom: CMD-Scroll.");
  zoom.replace(QLatin1String("CMD"), commandKeyName());
  return QStringList{Words::tr("Pan: middle or right mouse buttons."), zoom,
                     Words::tr("Fit: double-click."),
                     Words::tr("Keep crop ratio: Shift-drag a corner.")}
      .join(u'\n');
}

}  // namespace vantrel::ExportFooterText
