#include "export/video_geometry.h"

#include <QtGlobal>
#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>
#include <variant>

#include "base/failure.h"

namespace vantrel {
namespace {

/// In the order of MovieMetadataItem::kDensityKeys.
using Density = std::array<double, std::size(MovieMetadataItem::kDensityKeys)>;

/// Absent unless all four values are there, finite and greater than 0.
std::optional<Density> densityOf(const MovieMetadataItem& item) {
  if (item.identifier != MovieMetadataItem::kPixelDensity) return std::nullopt;
  const auto* const dictionary = std::get_if<MetadataDictionary>(&item.value);
  if (!dictionary) return std::nullopt;
  Density density{};
  for (size_t i = 0; i < density.size(); ++i) {
    const auto found = std::find_if(dictionary->begin(), dictionary->end(), [i](const auto& entry) {
      return entry.first == MovieMetadataItem::kDensityKeys[i];
    });
    if (found == dictionary->end()) return std::nullopt;
    if (!std::isfinite(found->second) || !(found->second > 0)) return std::nullopt;
    density[i] = found->second;
  }
  return density;
}

double pointsOf(double croppedPixels, double points, double pixels) {
  // std::round takes halves away from zero.
  return std::max(1.0, std::round(croppedPixels * points / pixels));
}

}  // namespace

VideoGeometry VideoExporter::geometry(const Movie& movie) {
  std::vector<MovieTrack> tracks = movie.tracks(MovieTrack::Kind::Video);
  if (tracks.empty())
    throw Failure(QT_TRANSLATE_NOOP("Failure", "This file has no readable video track."));
  return geometry(std::move(tracks.front()));
}

VideoGeometry VideoExporter::geometry(MovieTrack track) {
  const AffineTransform& stored = track.preferredTransform;
  const QTransform preferred(stored.a, stored.b, stored.c, stored.d, stored.tx, stored.ty);
  const QRectF turned =
      preferred.mapRect(QRectF(0, 0, track.naturalSize.width, track.naturalSize.height));
  return {std::move(track), QRectF(QPointF(0, 0), turned.size()),
          preferred * QTransform::fromTranslate(-turned.x(), -turned.y())};
}

CropVideoColor VideoExporter::colorInfo(const MovieTrack& track) {
  std::vector<CropVideoColor> colors;
  std::transform(track.formatDescriptions.begin(), track.formatDescriptions.end(),
                 std::back_inserter(colors), CropVideoColor::of);
  if (colors.empty()) return {};
  const auto hdr = std::find_if(colors.begin(), colors.end(),
                                [](const CropVideoColor& color) { return color.isHDR(); });
  return hdr == colors.end() ? colors.front() : *hdr;
}

std::vector<MovieMetadataItem> VideoExporter::displayDensity(const MovieTrack& track,
                                                             const QSizeF& croppedSize) {
  for (const MovieMetadataItem& item : track.metadata) {
    const std::optional<Density> density = densityOf(item);
    if (!density) continue;
    const auto [widthPixels, heightPixels, widthPoints, heightPoints] = *density;
    const Density cropped{std::trunc(croppedSize.width()), std::trunc(croppedSize.height()),
                          pointsOf(croppedSize.width(), widthPoints, widthPixels),
                          pointsOf(croppedSize.height(), heightPoints, heightPixels)};
    MetadataDictionary dictionary;
    for (size_t i = 0; i < cropped.size(); ++i)
      dictionary.emplace_back(MovieMetadataItem::kDensityKeys[i], cropped[i]);
    return {{item.identifier, item.dataType, std::move(dictionary)}};
  }
  return {};
}

}  // namespace vantrel
