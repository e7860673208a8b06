#include "inspector/source_facts.h"

#include <QCoreApplication>
#include <cmath>

#include "controls/panel_text.h"
#include "inspector/panel_numbers.h"
#include "platform/desktop/formatting.h"

namespace vantrel {
namespace {

class Words final {
  Q_DECLARE_TR_FUNCTIONS(SourceFacts)
};

QString resolution(const InspectorSource& source) {
  return PanelText::pixelSize(static_cast<int64_t>(source.sourceSize.width()),
                              static_cast<int64_t>(source.sourceSize.height()));
}

/// A file need not tell everything.
QString measured(double value, int digits, const QString& unit) {
  if (!std::isfinite(value)) return PanelNumbers::kNone;
  return CropFormatting::fixed(value, digits) + unit;
}

std::vector<SourceFact> imageFacts(const InspectorSource& source) {
  const ImageSource& image = *source.imageSource;
  std::vector<SourceFact> facts{
      {Words::tr("Format"), image.formatName(), {}},
      {Words::tr("Resolution"), resolution(source), Words::tr("Pixels")},
      {Words::tr("Size"), CropFormatting::byteCount(source.sourceBytes), {}}};
  if (const std::optional<QString>& profile = image.colorProfileName) {
    // Marked up, so that the name itself, which comes out of the file, is not taken for markup.
    facts.push_back({Words::tr("Color profile"), *profile,
                     QStringLiteral("<p>%1</p>").arg(profile->toHtmlEscaped())});
  }
  return facts;
}

}  // namespace

std::vector<SourceFact> sourceFacts(const InspectorSource& source) {
  if (source.imageSource) return imageFacts(source);
  const auto shown = [&source](const QString& value) {
    return source.loaded ? value : PanelNumbers::kNone;
  };
  return {{Words::tr("Dynamic range"),
           shown(source.sourceIsHDR ? Words::tr("HDR") : Words::tr("SDR")),
           {}},
          {Words::tr("Resolution"), source.loaded ? resolution(source) : PanelNumbers::kNoSize, {}},
          {Words::tr("Bitrate"), shown(measured(source.sourceMbps, 2, Words::tr(" Mbps"))), {}},
          {Words::tr("Frame rate"), shown(measured(source.sourceFPS, 0, Words::tr(" fps"))), {}},
          {Words::tr("Duration"), shown(measured(source.duration, 2, Words::tr(" s"))), {}},
          {Words::tr("Size"), shown(CropFormatting::byteCount(source.sourceBytes)), {}}};
}

}  // namespace vantrel
