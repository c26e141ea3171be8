#include "text/numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace quenlox {
namespace {

TEST(Numbers, ANumberIsReadAsFarAsItGoes) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    const struct {
        const char* text;
        double value;
        std::int32_t rounded;
        std::int32_t profile;
    } cases[] = {
        {"", 0, 0, 0},          {"abc", 0, 0, 0},        {"42", 42, 42, 42},          {" 12", 12, 12, 12},
        {"42A", 42, 42, 42},    {"B4", 0, 0, 0},         {"-7", -7, -7, -7},          {"+7", 7, 7, 7},
        {"2.5", 2.5, 2, 2},     {"3.5", 3.5, 4, 3},      {"-2.5", -2.5, -2, -2},      {".5", 0.5, 0, 0},
        {"1.2.3", 1.2, 1, 1},   {"-", 0, 0, 0},          {".", 0, 0, 0},              {"0x10", 0, 0, 16},
        {"1e3", 1, 1, 1},       {"95500", 95500, 95500, 95500}, {"１", 0, 0, 0},
        {"-0x1Fg", 0, 0, -31},  {"0b102", 0, 0, 2},      {"0o17", 0, 0, 15},          {"0X1F", 0, 0, 0},
        {"4294967301", 4294967301.0, most, 5},           {"-99999999999", -99999999999.0, -most - 1, -1215752191},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(NumericValue(c.text), c.value) << c.text;
        EXPECT_EQ(NumericInteger(c.text), c.rounded) << c.text;
        EXPECT_EQ(ProfileInteger(c.text), c.profile) << c.text;
    }
    EXPECT_GT(NumericValue(std::string(5000, '9')), 1e300);
}

TEST(Numbers, AShortListLeavesTheLaterElementsAsTheyWereAndSurplusIsDropped) {
    SplitValues values;
    SplitNumbers("1,2,3,4,9,255,0,0", values);
    SplitNumbers("10, 20", values);
    const std::int32_t expected[] = {10, 20, 3, 4, 9, 255, 0, 0, 0, 0, 0, 0};
    for (int i = 1; i <= 12; ++i) EXPECT_EQ(values(i), expected[i - 1]) << i;

    SplitNumbers("", values);
    EXPECT_EQ(values(1), 10);
    SplitNumbers("7,", values);
    EXPECT_EQ(values(1), 7);
    EXPECT_EQ(values(2), 0) << "the empty field behind the comma";
    EXPECT_EQ(values(3), 3);
    SplitNumbers("1,x,2.5,3.5,5,6,7,8,9,10,11,12,13,14", values);
    EXPECT_EQ(values(3), 2);
    EXPECT_EQ(values(4), 4);
    EXPECT_EQ(values(12), 12);
}

TEST(Numbers, MinutesAndSecondsHaveTwoDigitsAtLeastAndEachItsSign) {
    const struct {
        std::int64_t seconds;
        const char* text;
    } cases[] = {{0, "00:00"},     {75, "01:15"},    {6000, "100:00"}, {3599, "59:59"},
                          {-5, "00:-05"},   {-65, "-01:-05"}, {-600, "-10:00"},
                          {std::numeric_limits<std::int64_t>::min(), "-153722867280912930:-08"}};
    for (const auto& c : cases) EXPECT_EQ(MinutesAndSeconds(c.seconds), c.text) << c.seconds;
}

}  // namespace
}  // namespace quenlox
