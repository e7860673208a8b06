#include "model/crop_dimension_validation.h"

#include <gtest/gtest.h>

#include <ostream>

namespace vantrel {
namespace {

struct Row {
  QString text;
  int64_t maximum, multiple, value;
  bool rejected;
};

constexpr int64_t kCurrent = 640;

void PrintTo(const Row& row, std::ostream* out) {
  *out << '"' << row.text.toStdString() << "\", maximum " << row.maximum << ", step "
       << row.multiple;
}

class DimensionEntryRule : public ::testing::TestWithParam<Row> {};

TEST_P(DimensionEntryRule, ResolvesTheText) {
  const Row& row = GetParam();
  const auto result =
      CropDimensionValidation::resolve(row.text, kCurrent, row.maximum, row.multiple);
  EXPECT_EQ(result.value, row.value);
  EXPECT_EQ(result.rejected, row.rejected);
}

QString text(const char16_t* characters) {
  return QString::fromUtf16(characters);
}

INSTANTIATE_TEST_SUITE_P(WithinTheLimits, DimensionEntryRule,
                         ::testing::Values(Row{text(u"800"), 1921, 2, 800, false},
                                           Row{text(u"801"), 1921, 2, 800, false},
                                           Row{text(u"+800"), 1921, 1, 800, false},
                                           Row{text(u"1"), 1921, 1, 1, false},
                                           Row{text(u"2"), 1921, 2, 2, false},
                                           Row{text(u"3"), 1921, 2, 2, false},
                                           Row{text(u"1921"), 1921, 1, 1921, false},
                                           Row{text(u"1920"), 1921, 2, 1920, false},
                                           Row{text(u"000800"), 1921, 2, 800, false}));

INSTANTIATE_TEST_SUITE_P(BlanksAround, DimensionEntryRule,
                         ::testing::Values(Row{text(u" 800\n"), 1921, 2, 800, false},
                                           Row{text(u"\t800\r\n"), 1921, 2, 800, false},
                                           Row{text(u"\u00a0800\u2028"), 1921, 2, 800, false},
                                           Row{text(u"\u3000800\u0085"), 1921, 2, 800, false}));

INSTANTIATE_TEST_SUITE_P(OutOfTheLimits, DimensionEntryRule,
                         ::testing::Values(Row{text(u"1"), 1921, 2, 2, true},
                                           Row{text(u"0"), 1921, 1, 1, true},
                                           Row{text(u"-4"), 1921, 2, 2, true},
                                           Row{text(u"1921"), 1921, 2, 1920, true},
                                           Row{text(u"5000"), 1921, 1, 1921, true},
                                           Row{text(u"9223372036854775807"), 1921, 2, 1920, true},
                                           Row{text(u"-9223372036854775808"), 1921, 2, 2, true}));

INSTANTIATE_TEST_SUITE_P(TooLongOrOfAnotherScript, DimensionEntryRule,
                         ::testing::Values(Row{text(u"99999999999999999999"), 1921, 2, 1920, true},
                                           Row{text(u"9223372036854775808"), 1921, 1, 1921, true},
                                           Row{text(u"٣٢"), 1921, 2, 1920, true},
                                           Row{text(u"½"), 1921, 2, 1920, true},
                                           Row{text(u"Ⅷ"), 1921, 2, 1920, true},
                                           Row{text(u"\U0001D7D9"), 1921, 2, 1920, true}));

INSTANTIATE_TEST_SUITE_P(
    NoNumber, DimensionEntryRule,
    ::testing::Values(
        Row{text(u""), 1921, 2, kCurrent, true}, Row{text(u"  "), 1921, 2, kCurrent, true},
        Row{text(u"12a"), 1921, 2, kCurrent, true}, Row{text(u"8.5"), 1921, 2, kCurrent, true},
        Row{text(u"1 000"), 1921, 2, kCurrent, true}, Row{text(u"+"), 1921, 2, kCurrent, true},
        Row{text(u"+-8"), 1921, 2, kCurrent, true},
        Row{text(u"-99999999999999999999"), 1921, 2, kCurrent, true},
        Row{text(u"+99999999999999999999"), 1921, 2, kCurrent, true},
        Row{QString(QChar(0xD835)), 1921, 2, kCurrent, true}));

INSTANTIATE_TEST_SUITE_P(SourceBelowTheStep, DimensionEntryRule,
                         ::testing::Values(Row{text(u"5"), 1, 2, 2, true},
                                           Row{text(u"2"), 0, 2, 2, false},
                                           Row{text(u"0"), 0, 1, 1, true}));

TEST(CropDimensionValidationDeathTest, StepMustBePositive) {
  EXPECT_DEATH(std::ignore = CropDimensionValidation::resolve(text(u"8"), 1, 9, 0), "pixel step");
}

}  // namespace
}  // namespace vantrel
