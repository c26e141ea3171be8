#include <gtest/gtest.h>

#include <thread>

#include "libraries/gogo/gogo.h"
#include "tests/gogo/support.h"

using namespace gogo::test;

namespace {

class Api : public testing::Test {
  protected:
    ~Api() override { MPGE_endCoderVB(); }
    TempDir dir;
    const std::string result = dir.path("結果.mp3");
};

TEST_F(Api, AWholeRunGivesTheFileWithItsLastFrame) {
    const std::string source = dir.write("音.wav", Wave(Music(48000, 2, 50000), 48000, 2));
    for (int run = 0; run < 2; ++run) {
        ASSERT_EQ(MPGE_initializeWorkVB(), GOGO_OK);
        EXPECT_EQ(MPGE_setConfigureVB(1, 0, source.c_str()), GOGO_OK);
        EXPECT_EQ(MPGE_setConfigureVB(2, 0, result.c_str()), GOGO_OK);
        for (const auto& [item, value] : {std::pair{6, 44100}, {3, 2}, {18, 4}, {4, 32}})
            EXPECT_EQ(MPGE_setConfigureVB(item, value, nullptr), GOGO_OK) << item;
        ASSERT_EQ(MPGE_detectConfigureVB(), GOGO_OK);
        int32_t frames = 0;
        ASSERT_EQ(MPGE_getConfigureVB(15, &frames), GOGO_OK);
        EXPECT_EQ(frames, 41);
        EXPECT_EQ(MPGE_setConfigureVB(4, 96, nullptr), GOGO_ERROR_STATE) << "it is open";
        for (int32_t i = 1; i < frames; ++i) ASSERT_EQ(MPGE_processFrameVB(), GOGO_OK) << i;
        EXPECT_EQ(MPGE_processFrameVB(), GOGO_FINISHED);
        EXPECT_EQ(MPGE_processFrameVB(), GOGO_ERROR_STATE);
        EXPECT_EQ(DecodeByMpg123(result).frames(), 45938);
        EXPECT_EQ(MPGE_closeCoderVB(), GOGO_OK);
        EXPECT_EQ(MPGE_endCoderVB(), GOGO_OK);
    }
}

TEST_F(Api, ThreadsEncodeSideBySideToTheSameBytesOnAnyNumberOfCores) {
    const std::string source = dir.write("a.wav", Wave(Music(44100, 2, 44100 * 40), 44100, 2));
    const auto encode = [&](int cores) {
        EXPECT_EQ(MPGE_initializeWorkVB(), GOGO_OK);
        MPGE_setConfigureVB(1, 0, source.c_str());
        MPGE_setConfigureVB(2, 0, dir.path(std::to_string(cores)).c_str());
        EXPECT_EQ(MPGE_setConfigureVB(GOGO_ITEM_CORES, cores, nullptr), GOGO_OK);
        EXPECT_EQ(MPGE_detectConfigureVB(), GOGO_OK);
        while (MPGE_processFrameVB() == GOGO_OK) {
        }
        MPGE_endCoderVB();
    };
    std::vector<std::thread> threads;
    for (int cores = 0; cores < 3; ++cores) threads.emplace_back(encode, cores);
    for (std::thread& thread : threads) thread.join();
    const auto bytes = ReadBytes(dir.path("0"));
    EXPECT_GT(bytes.size(), 600000u);
    EXPECT_TRUE(bytes == ReadBytes(dir.path("1")) && bytes == ReadBytes(dir.path("2")));
}

TEST_F(Api, CallsOutOfOrderAndWrongValuesAreErrors) {
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
    const struct {
        int32_t item, value;
        const char* text;
    } wrong[] = {{1, 0, nullptr},   {2, 0, ""},        {3, 3, nullptr},     {3, -1, nullptr},
                 {4, 7, nullptr},   {4, 321, nullptr}, {6, 44000, nullptr}, {15, 1, nullptr},
                 {18, 10, nullptr}, {18, -2, nullptr}, {32, 65, nullptr},   {99, 0, nullptr}};
    for (const auto& w : wrong)
        EXPECT_EQ(MPGE_setConfigureVB(w.item, w.value, w.text), GOGO_ERROR_ARGUMENT) << w.item << " " << w.value;
    EXPECT_EQ(MPGE_getConfigureVB(4, nullptr), GOGO_ERROR_ARGUMENT);
    ASSERT_EQ(MPGE_getConfigureVB(4, &value), GOGO_OK);
    EXPECT_EQ(value, 128);
    EXPECT_EQ(MPGE_setConfigureVB(18, 5, nullptr), GOGO_OK);
    EXPECT_EQ(MPGE_setConfigureVB(18, -1, nullptr), GOGO_OK) << "the bit rate is constant again";
    EXPECT_EQ(MPGE_getConfigureVB(18, &value), GOGO_OK);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(MPGE_getUnitStatesVB(&value), GOGO_OK);
    EXPECT_GE(value, 1);
    char version[64];
    EXPECT_EQ(MPGE_getVersionVB(version, sizeof version), GOGO_OK);
    EXPECT_STREQ(version, QUENLOX_VERSION);
}

}  // namespace
