// The encoder library: any order of calls is answered, a file appears whole or not at all, and nothing else is left.
#include <gtest/gtest.h>

#include <chrono>
#include <random>

#include "libraries/gogo/gogo.h"
#include "tests/gogo/support.h"

namespace gogo::test {
namespace {

TEST(GogoSoak, AnyOrderOfCallsIsAnsweredAndAFileIsWholeOrNotThere) {
    const unsigned seed = vbmp3::test::RandomSeed();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    TempDir dir;
    const Bytes good = Wave(Music(44100, 2, 40000), 44100, 2);
    Bytes cut(good.begin(), good.begin() + 30001), wrong = good;
    for (int i = 0; i < 10; ++i) wrong[static_cast<size_t>(below(44))] = static_cast<uint8_t>(random());
    const std::string sources[] = {dir.write("good.wav", good),
                                   dir.write("long.wav", Wave(Music(22050, 1, 700000), 22050, 1)),
                                   dir.write("cut.wav", cut), dir.write("wrong.wav", wrong), dir.path("none.wav")};
    const std::string target = dir.path("out.mp3");
    const std::string targets[] = {target, target, target, target, dir.path("none/out.mp3"), dir.path("")};
    const auto names = [&] { return dir.names().size() - (dir.names().contains("out.mp3") ? 1 : 0); };
    const size_t before = names();
    int finished = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(vbmp3::test::RandomSeconds());
    while (std::chrono::steady_clock::now() < end || finished == 0) {
        int32_t result = 0, value = 0;
        switch (below(14)) {
            case 0:
            case 1: result = MPGE_initializeWorkVB(); break;
            case 2: result = MPGE_setConfigureVB(1, 0, sources[below(5)].c_str()); break;
            case 3: result = MPGE_setConfigureVB(2, 0, targets[below(6)].c_str()); break;
            case 4: result = MPGE_setConfigureVB(4, below(400), nullptr); break;
            case 5:
                result = MPGE_setConfigureVB(6, below(2) == 0 ? 44100 : below(2) == 0 ? 8000 : below(50000), nullptr);
                break;
            case 6: result = MPGE_setConfigureVB(below(2) == 0 ? 3 : 18, below(12) - 1, nullptr); break;
            case 7:
            case 8: result = MPGE_detectConfigureVB(); break;
            case 9: result = MPGE_getConfigureVB(below(20), &value); break;
            case 10:
                for (int i = below(60); i >= 0 && result == GOGO_OK; --i) result = MPGE_processFrameVB();
                break;
            case 11:
                while (result == GOGO_OK) result = MPGE_processFrameVB();
                break;
            case 12: result = MPGE_closeCoderVB(); break;
            default: result = below(3) == 0 ? MPGE_endCoderVB() : GOGO_OK;
        }
        ASSERT_TRUE(result >= GOGO_OK && result <= GOGO_ERROR_ENCODER) << result;
        if (result != GOGO_FINISHED) continue;
        ++finished;
        MPGE_getConfigureVB(15, &value);
        const Bytes file = ReadBytes(target);
        const auto header = vbmp3::ParseFrameHeader(file);
        ASSERT_TRUE(header);
        const auto info =
            vbmp3::ParseInfoFrame(*header, std::span(file).first(static_cast<size_t>(header->frameBytes)));
        ASSERT_TRUE(info);
        EXPECT_EQ(info->frames, static_cast<uint32_t>(value));
        EXPECT_EQ(info->bytes, file.size());
        EXPECT_EQ(names(), before);
    }
    MPGE_endCoderVB();
    EXPECT_EQ(names(), before);
    EXPECT_EQ(ReadBytes(sources[0]), good);
}

}  // namespace
}  // namespace gogo::test
