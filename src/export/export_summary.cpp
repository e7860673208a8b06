#include "export/export_summary.h"

#include <QCoreApplication>

#include "platform/desktop/formatting.h"

namespace vantrel {

QString ExportSummary::description() const {
  const QString width = QString::number(static_cast<qint64>(resolution.width()));
  const QString height = QString::number(static_cast<qint64>(resolution.height()));
  const QString size = CropFormatting::byteCount(bytes);
  if (imageFormat) {
    return QStringLiteral("%1 · %2 × %3 px · %4").arg(*imageFormat, width, height, size);
  }
  return QCoreApplication::translate("ExportSummary",
                                     "%1 · %2 · %3 × %4 · %5 Mbps · %6 · exported in %7 s")
      .arg(codec, isHDR ? QStringLiteral("HDR") : QStringLiteral("SDR"), width, height,
           CropFormatting::fixed(bitrate, 2), size, CropFormatting::fixed(elapsed, 1));
}

}  // namespace vantrel
