#include <gtest/gtest.h>

#include "libraries/vbmp3/player.h"
#include "tests/vbmp3/support.h"

namespace vbmp3::test {
namespace {

class Playing : public testing::Test {
protected:
    TempDir dir_;
    SoundSettings sound_;
    std::shared_ptr<Heard> heard_ = std::make_shared<Heard>();
};

TEST_F(Playing, WhatIsHeardOfAnMp3IsExactlyAsLongAsWhatWasEncoded)
{
    const int frames = 3 * 44100 + 17;
    writeBytes(dir_.path("a.mp3"), mp3File(44100, 2, tone(44100, 2, frames)));
    Player player(sound_, memorySystem(heard_));
    std::atomic<int> ends = 0;
    player.setListener([&](int event) { ends += event == VBMP3_EVENT_END_OF_TRACK; });
    ASSERT_EQ(player.open(dir_.path("a.mp3")), VBMP3_OK);
    ASSERT_EQ(player.play(), VBMP3_OK);
    ASSERT_TRUE(eventually([&] { return ends == 1; }));
    EXPECT_EQ(heard_->all().size(), size_t(2 * frames));
    EXPECT_EQ(player.snapshot().state, 0);
    EXPECT_NEAR(player.snapshot().seconds, frames / 44100.0, 0.001);
}

} // namespace
} // namespace vbmp3::test
