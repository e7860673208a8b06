#include "inspector/source_facts.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel {
namespace {

using Facts = std::vector<SourceFact>;

InspectorSource video() {
  InspectorSource source;
  source.sourceSize = {3840.6, 2160};
  source.sourceMbps = 52.404;
  source.sourceFPS = 29.97;
  source.sourceBytes = 294'900'000;
  source.sourceIsHDR = true;
  source.duration = 45.015;
  source.loaded = true;
  return source;
}

InspectorSource image() {
  InspectorSource source;
  source.imageSource.emplace();
  source.imageSource->type = ContentType::jpeg();
  source.sourceSize = {4032, 3024};
  source.sourceBytes = 4'800'000;
  source.loaded = true;
  return source;
}

TEST(SourceFacts, OfAVideo) {
  EXPECT_EQ(sourceFacts(video()),
            (Facts{{QStringLiteral("Dynamic range"), QStringLiteral("HDR"), {}},
                   {QStringLiteral("Resolution"), QStringLiteral("3840 × 2160"), {}},
                   {QStringLiteral("Bitrate"), QStringLiteral("52.40 Mbps"), {}},
                   {QStringLiteral("Frame rate"), QStringLiteral("30 fps"), {}},
                   {QStringLiteral("Duration"), QStringLiteral("45.02 s"), {}},
                   {QStringLiteral("Size"), QStringLiteral("294.9 MB"), {}}}));
}

TEST(SourceFacts, OfAVideoThatTellsLittle) {
  InspectorSource source = video();
  source.sourceIsHDR = false;
  source.sourceMbps = 0;
  source.duration = std::numeric_limits<double>::quiet_NaN();
  source.sourceFPS = 1500;
  const Facts facts = sourceFacts(source);
  EXPECT_EQ(facts[0].value, QStringLiteral("SDR"));
  EXPECT_EQ(facts[2].value, QStringLiteral("0.00 Mbps"));
  EXPECT_EQ(facts[3].value, QStringLiteral("1,500 fps"));
  EXPECT_EQ(facts[4].value, QStringLiteral("—"));
}

TEST(SourceFacts, WithoutAFileAreDashes) {
  EXPECT_EQ(sourceFacts({}), (Facts{{QStringLiteral("Dynamic range"), QStringLiteral("—"), {}},
                                    {QStringLiteral("Resolution"), QStringLiteral("— × —"), {}},
                                    {QStringLiteral("Bitrate"), QStringLiteral("—"), {}},
                                    {QStringLiteral("Frame rate"), QStringLiteral("—"), {}},
                                    {QStringLiteral("Duration"), QStringLiteral("—"), {}},
                                    {QStringLiteral("Size"), QStringLiteral("—"), {}}}));
}

TEST(SourceFacts, OfAnImageWithoutAProfile) {
  EXPECT_EQ(sourceFacts(image()), (Facts{{QStringLiteral("Format"), QStringLiteral("JPEG"), {}},
                                         {QStringLiteral("Resolution"),
                                          QStringLiteral("4032 × 3024"), QStringLiteral("Pixels")},
                                         {QStringLiteral("Size"), QStringLiteral("4.8 MB"), {}}}));
}

TEST(SourceFacts, OfAnImageNameItsProfileWhole) {
  InspectorSource source = image();
  source.imageSource->colorProfileName = QStringLiteral("<b>Wide</b>");
  const Facts facts = sourceFacts(source);
  ASSERT_EQ(facts.size(), 4U);
  EXPECT_EQ(facts[3], (SourceFact{QStringLiteral("Color profile"), QStringLiteral("<b>Wide</b>"),
                                  QStringLiteral("<p>&lt;b&gt;Wide&lt;/b&gt;</p>")}));
}

}  // namespace
}  // namespace vantrel
