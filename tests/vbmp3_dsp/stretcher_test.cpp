#include "libraries/vbmp3/dsp/stretcher.h"

#include <gtest/gtest.h>

#include "tests/vbmp3_dsp/signals.h"

namespace vbmp3::test {
namespace {

struct Case {
    int pitch;
    int factor;
    int rate = 44100;
    double tempo() const { return 1.0 + (factor - 1) / 5.0; }
};

TEST(Pitch, PitchChangesTheFrequencyAndStepPitchTheLength) {
    const Case cases[] = {{130, 1}, {80, 1},   {50, 1},   {200, 1},       {130, 1, 48000}, {130, 1, 22050}, {100, 6},
                          {100, 3}, {100, -1}, {100, 16}, {100, 6, 8000}, {120, 4, 48000}, {100, 6, 192000}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.pitch << " %, step " << c.factor << " at " << c.rate);
        const Samples in = Tones({{440.0, 0.5}}, c.rate, 4.0);
        const Samples out = Through(Wanted(c.pitch, c.factor), in, c.rate);
        const size_t length = out.size() / 2;
        EXPECT_EQ(static_cast<int64_t>(length), std::llround(4.0 * c.rate / c.tempo()));
        EXPECT_NEAR(FrequencyOf(out, c.rate, length / 5, length * 4 / 5), 440.0 * c.pitch / 100.0, 440.0 * 0.004);
        // Sound from the first frames to the last, not silence that was put in for length.
        EXPECT_GT(PeakOf(std::span(out).subspan(length / 200 * 2, length / 50 * 2)), 0.3);
        EXPECT_GT(PeakOf(std::span(out).last(length / 50 * 2)), 0.3);
    }
}

// Mean amplitude over windows of 23 ms: pieces of a stretched tone do not keep their phase for longer.
double MeanAmplitude(const Samples& samples, double hz, int rate) {
    double sum = 0.0;
    int windows = 0;
    for (size_t i = rate / 2; i + 1024 < samples.size() / 2 - rate / 2; i += 512, ++windows)
        sum += AmplitudeAt(samples, hz, rate, i, i + 1024);
    return sum / windows;
}

TEST(Pitch, QualityDecidesWhatIsLeftOfTonesThatNoLongerFit) {
    // 17.5 kHz become 22.75 kHz at 130 %, more than half the rate; what is left of them comes back as 21.35 kHz. 15 kHz
    // are to stay what they are.
    const int rate = 44100;
    double ghost[3], kept[3];
    for (int quality = 0; quality < 3; ++quality) {
        Wanted settings(130);
        ASSERT_TRUE(settings.setQuality(quality));
        const Samples out = Through(settings, Tones({{17500.0, 0.4}, {15000.0, 0.4}}, rate, 3.0), rate);
        ghost[quality] = MeanAmplitude(out, 21350.0, rate);
        kept[quality] = MeanAmplitude(out, 19500.0, rate);
    }
    EXPECT_LT(ghost[1], ghost[0] / 4);
    EXPECT_GE(kept[1], kept[0] * 0.99);
    EXPECT_GT(ghost[2], ghost[0]);
}

TEST(Pitch, ValuesOutOfRangeAreRefusedAndChangeNothing) {
    SoundSettings settings;
    for (const int percent : {49, 201}) EXPECT_FALSE(settings.setPitch(percent)) << percent;
    for (const int quality : {-1, 3}) EXPECT_FALSE(settings.setQuality(quality)) << quality;
    for (const auto& [factor, base] : {std::pair{1, 0}, {1, -5}, {-3, 5}, {17, 5}, {INT32_MIN, 1}, {INT32_MAX, 1}})
        EXPECT_FALSE(settings.setStepPitch(factor, base)) << factor << " of " << base;
    EXPECT_EQ(settings.version(), 0u);
}

TEST(Pitch, ThePositionIsThatOfTheClickBeingHeard) {
    // Clicks at uneven distances, so that none is taken for another, in a little noise.
    const int rate = 44100;
    for (const Case& c : {Case{130, 1}, {80, 1}, {200, 1}, {50, 1}, {100, 2}, {100, 0}, {100, 6}, {130, 2}}) {
        SCOPED_TRACE(testing::Message() << c.pitch << " %, step " << c.factor);
        Samples in = Noise(4 * rate, 0.01f);
        std::vector<double> clicks;
        for (double at = 0.1; at < 3.9; at += 0.15 + 0.05 * std::sin(7 * at)) {
            const auto frame = static_cast<size_t>(at * rate);
            for (size_t i = frame; i < frame + 30; ++i) in[2 * i] = in[2 * i + 1] = 0.9f;
            clicks.push_back(static_cast<double>(frame));
        }
        const Wanted settings(c.pitch, c.factor);
        ChainRun run(settings, rate);
        Samples& out = run.out;
        run.feed(in, 0, in.size() / 2);
        run.chain.finish(out);
        int heard = 0;
        double worst = 0;
        for (size_t i = 0; i < out.size() / 2; ++i) {
            if (std::abs(out[2 * i]) < 0.6f) continue;  // one that fades out under the next piece
            const double position = run.chain.position(static_cast<int64_t>(i)).frame;
            double off = rate;
            for (const double click : clicks) off = std::min(off, std::abs(position - click));
            worst = std::max(worst, off / rate * 1000);
            ++heard;
            i += static_cast<size_t>(rate / 100);
        }
        EXPECT_GE(heard, 6);  // fast sound leaves some out
        EXPECT_LT(worst, 5.0) << "milliseconds";
    }
}

TEST(Pitch, ChangesWhilePlayingMakeNoClickAndKeepTheLength) {
    const int rate = 44100;
    const Samples in = Tones({{300.0, 0.3}}, rate, 6.0);
    SoundSettings settings;
    ChainRun run(settings, rate);
    Samples& out = run.out;
    const int pitches[] = {100, 130, 100, 80, 120, 100};
    for (size_t step = 0; step < 6; ++step) {
        settings.setPitch(pitches[step]);
        run.feed(in, step * rate, (step + 1) * rate, 1000);
    }
    run.chain.finish(out);
    EXPECT_EQ(out.size(), in.size());
    EXPECT_LT(Roughness(out, 100, out.size() / 2), 0.01);
    EXPECT_NEAR(FrequencyOf(out, rate, rate + rate / 4, 2 * rate - rate / 4), 390.0, 1.5);
    EXPECT_NEAR(FrequencyOf(out, rate, 2 * rate + rate / 4, 3 * rate - rate / 4), 300.0, 1.5);
    // Back at normal the frames are those of the source, at their own place.
    EXPECT_TRUE(std::equal(out.end() - rate, out.end(), in.end() - rate));
}

}  // namespace
}  // namespace vbmp3::test
