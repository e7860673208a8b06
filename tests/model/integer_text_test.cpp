#include "model/integer_text.h"

#include <gtest/gtest.h>

#include <QString>
#include <limits>

namespace vantrel {
namespace {

TEST(IntegerFromText, ReadsAnOptionalSignAndDigits) {
  EXPECT_EQ(integerFromText(u"0"), 0);
  EXPECT_EQ(integerFromText(u"-0"), 0);
  EXPECT_EQ(integerFromText(u"+12"), 12);
  EXPECT_EQ(integerFromText(u"-12"), -12);
  EXPECT_EQ(integerFromText(u"00000000000000000000000000012"), 12);
}

TEST(IntegerFromText, ReadsExactlyThe64BitRange) {
  EXPECT_EQ(integerFromText(u"9223372036854775807"), std::numeric_limits<int64_t>::max());
  EXPECT_EQ(integerFromText(u"-9223372036854775808"), std::numeric_limits<int64_t>::min());
  EXPECT_EQ(integerFromText(u"9223372036854775808"), std::nullopt);
  EXPECT_EQ(integerFromText(u"-9223372036854775809"), std::nullopt);
}

TEST(IntegerFromText, RefusesEverythingElse) {
  for (const QStringView text : {u"", u"+", u"-", u"+-1", u"--1", u"1-", u" 1", u"1 ", u"1,000",
                                 u"1 000", u"0x1", u"1e3", u"8.5", u"12a", u"٣٢", u"１"}) {
    EXPECT_EQ(integerFromText(text), std::nullopt) << text.toString().toStdString();
  }
}

}  // namespace
}  // namespace vantrel
