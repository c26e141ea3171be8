#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>

#include "libraries/gogo/gogo.h"
#include "tests/gogo/support.h"

using gogo::test::decode;
using gogo::test::music;
using gogo::test::wave;
using vbmp3::test::TempDir;

namespace {

class Api : public testing::Test {
protected:
    ~Api() override { MPGE_endCoderVB(); }
    TempDir dir;
};

TEST_F(Api, AWholeRunGivesTheFileWithItsLastFrame)
{
    const std::string source = dir.path("音.wav"), destination = dir.path("結果.mp3");
    vbmp3::test::writeBytes(source, wave(music(48000, 2, 50000), 48000, 2));
    for (int run = 0; run < 2; ++run) {
        ASSERT_EQ(MPGE_initializeWorkVB(), GOGO_OK);
        EXPECT_EQ(MPGE_setConfigureVB(1, 0, source.c_str()), GOGO_OK);
        EXPECT_EQ(MPGE_setConfigureVB(2, 0, destination.c_str()), GOGO_OK);
        EXPECT_EQ(MPGE_setConfigureVB(6, 44100, nullptr), GOGO_OK);
        EXPECT_EQ(MPGE_setConfigureVB(3, 2, nullptr), GOGO_OK);
        EXPECT_EQ(MPGE_setConfigureVB(18, 4, nullptr), GOGO_OK);
        EXPECT_EQ(MPGE_setConfigureVB(4, 32, nullptr), GOGO_OK);
        ASSERT_EQ(MPGE_detectConfigureVB(), GOGO_OK);
        int32_t frames = 0;
        ASSERT_EQ(MPGE_getConfigureVB(15, &frames), GOGO_OK);
        EXPECT_EQ(frames, 41);
        for (int32_t i = 1; i < frames; ++i)
            ASSERT_EQ(MPGE_processFrameVB(), GOGO_OK) << i;
        EXPECT_EQ(MPGE_processFrameVB(), GOGO_FINISHED);
        EXPECT_EQ(MPGE_processFrameVB(), GOGO_ERROR_STATE);
        EXPECT_EQ(decode(destination).frames(), 45938);
        EXPECT_EQ(MPGE_closeCoderVB(), GOGO_OK);
        EXPECT_EQ(MPGE_endCoderVB(), GOGO_OK);
    }
}

TEST_F(Api, CallsOutOfOrderAndWrongValuesAreErrors)
{
    int32_t value = 0;
    EXPECT_EQ(MPGE_setConfigureVB(4, 128, nullptr), GOGO_ERROR_STATE);
    EXPECT_EQ(MPGE_detectConfigureVB(), GOGO_ERROR_STATE);
    EXPECT_EQ(MPGE_processFrameVB(), GOGO_ERROR_STATE);
    EXPECT_EQ(MPGE_closeCoderVB(), GOGO_ERROR_STATE);
    EXPECT_EQ(MPGE_endCoderVB(), GOGO_OK);
    ASSERT_EQ(MPGE_initializeWorkVB(), GOGO_OK);
    EXPECT_EQ(MPGE_initializeWorkVB(), GOGO_ERROR_STATE);
    EXPECT_EQ(MPGE_processFrameVB(), GOGO_ERROR_STATE);
    EXPECT_EQ(MPGE_detectConfigureVB(), GOGO_ERROR_SOURCE);
    EXPECT_EQ(MPGE_getConfigureVB(15, &value), GOGO_ERROR_STATE);
    const struct { int32_t item, value; const char* text; } wrong[] = {
        {1, 0, nullptr}, {2, 0, ""}, {3, 3, nullptr}, {3, -1, nullptr}, {4, 7, nullptr}, {4, 321, nullptr}, {6, 44000, nullptr},
        {15, 1, nullptr}, {18, 10, nullptr}, {18, -1, nullptr}, {99, 0, nullptr}};
    for (const auto& w : wrong)
        EXPECT_EQ(MPGE_setConfigureVB(w.item, w.value, w.text), GOGO_ERROR_ARGUMENT) << w.item << " " << w.value;
    EXPECT_EQ(MPGE_getConfigureVB(4, nullptr), GOGO_ERROR_ARGUMENT);
    ASSERT_EQ(MPGE_getConfigureVB(4, &value), GOGO_OK);
    EXPECT_EQ(value, 128);
    EXPECT_EQ(MPGE_getUnitStatesVB(&value), GOGO_OK);
    EXPECT_GE(value, 1);
    char version[16];
    EXPECT_EQ(MPGE_getVersionVB(version, sizeof version), GOGO_OK);
    EXPECT_STREQ(version, QUENLOX_VERSION);
}

TEST_F(Api, ClosingHalfWayLeavesNothing)
{
    const std::string source = dir.path("a.wav"), destination = dir.path("a.mp3");
    vbmp3::test::writeBytes(source, wave(music(44100, 2, 200000), 44100, 2));
    ASSERT_EQ(MPGE_initializeWorkVB(), GOGO_OK);
    MPGE_setConfigureVB(1, 0, source.c_str());
    MPGE_setConfigureVB(2, 0, destination.c_str());
    ASSERT_EQ(MPGE_detectConfigureVB(), GOGO_OK);
    EXPECT_EQ(MPGE_setConfigureVB(4, 96, nullptr), GOGO_ERROR_STATE);
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(MPGE_processFrameVB(), GOGO_OK);
    EXPECT_EQ(MPGE_closeCoderVB(), GOGO_OK);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path("")), {}), 1);
}

} // namespace
