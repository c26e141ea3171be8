// Draws all sixty views of the panel from a little made-up music into one picture: panel_sheet FILE.ppm [SECONDS
// [RRGGBB [solo]]]. For the eye, after a change to a drawing procedure. `solo` is one plucked string, played softly.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string_view>
#include <vector>

#include "libraries/vbmp3/dsp/spectrum.h"
#include "speana/speana.h"

namespace quenlox {
namespace {

constexpr int kRate = 44100, kScale = 3, kColumns = 10, kGap = 2;

// A bar of four beats: drum, bass, a chord that wanders between the sides, a hi-hat.
std::vector<float> Music(double seconds) {
    const auto frames = static_cast<std::size_t>(seconds * kRate);
    std::vector<float> music(frames * 2);
    unsigned seed = 1;
    for (std::size_t i = 0; i < frames; ++i) {
        const double t = static_cast<double>(i) / kRate, beat = std::fmod(t, 0.5), off = std::fmod(t + 0.25, 0.5);
        const auto tone = [t](double hertz) { return std::sin(2 * std::numbers::pi * hertz * t); };
        seed = seed * 1664525 + 1013904223;
        const double noise = static_cast<int>(seed) / 2147483648.0;
        const double drum =
            std::exp(-beat * 16) * std::sin(2 * std::numbers::pi * (50 + 90 * std::exp(-beat * 40)) * beat);
        const double root = 110 * std::pow(2.0, static_cast<int>(t / 2) % 4 * 3 / 12.0);
        const double bass = 0.3 * (tone(root / 2) + 0.4 * tone(root));
        const double hat = 0.35 * std::exp(-off * 40) * noise + 0.04 * noise;
        const double pan = 0.5 + 0.4 * std::sin(t * 2);
        double chord = 0;
        for (const double ratio : {1.0, 1.26, 1.5, 2.0, 3.0, 5.0, 8.0, 13.0})
            chord += tone(root * 2 * ratio) / (1.5 + ratio);
        music[2 * i] = static_cast<float>(0.6 * drum + bass + 0.3 * chord * pan + hat);
        music[2 * i + 1] = static_cast<float>(0.6 * drum + bass + 0.3 * chord * (1 - pan) + hat * 0.7);
    }
    return music;
}

// A note every half second in the middle, its upper partials dying first.
std::vector<float> Solo(double seconds) {
    const auto frames = static_cast<std::size_t>(seconds * kRate);
    std::vector<float> music(frames * 2);
    for (std::size_t i = 0; i < frames; ++i) {
        const double t = static_cast<double>(i) / kRate, since = std::fmod(t, 0.5);
        const double root = 196 * std::pow(2.0, static_cast<int>(t / 0.5) * 5 % 12 / 12.0);
        double string = 0;
        for (int partial = 1; partial <= 5; ++partial)
            string += std::exp(-since * (2 + 3 * partial)) * std::sin(2 * std::numbers::pi * root * partial * t) /
                      (partial * partial);
        music[2 * i] = music[2 * i + 1] = static_cast<float>(0.12 * string);
    }
    return music;
}

void Run(const char* path, double seconds, Color accent, bool solo) {
    vbmp3::Tap tap;
    tap.setSampleRate(kRate);
    tap.write(0, solo ? Solo(seconds + 0.2) : Music(seconds + 0.2));
    vbmp3::SpectrumAnalyzer analyzer;
    std::vector<Speana> panels(kPanelViews);
    for (Speana& panel : panels) panel.setAccent(accent);
    SoundFrame sound;
    for (double t = 0; t < seconds; t += 0.05) {
        const auto frame = static_cast<std::int64_t>(t * kRate);
        tap.read(frame, SoundFrame::kSamples, sound.left.data(), sound.right.data());
        for (int view = 0; view < kPanelViews; ++view) {
            constexpr int kBands[] = {21, 42, 85};
            sound.bands = kBands[view % 3];
            analyzer.read(tap, frame, std::span(sound.levels).first(static_cast<std::size_t>(sound.bands)));
            panels[static_cast<std::size_t>(view)].draw(view, sound);
        }
    }
    Surface sheet(kColumns * (85 + kGap) * kScale, kPanelGroups * (30 + kGap) * kScale, {60, 60, 60});
    for (int view = 0; view < kPanelViews; ++view) {
        const Surface& frame = panels[static_cast<std::size_t>(view)].frame();
        sheet.stretch(frame, frame.rect(),
                      {view % 10 * (85 + kGap) * kScale, view / 10 * (30 + kGap) * kScale, 85 * kScale, 30 * kScale});
    }
    std::FILE* file = std::fopen(path, "wb");
    if (!file) return;
    std::fprintf(file, "P6\n%d %d\n255\n", sheet.width(), sheet.height());
    for (const Surface::Pixel pixel : sheet.pixels()) {
        const Color color = Surface::ToColor(pixel);
        std::fputc(color.red, file), std::fputc(color.green, file), std::fputc(color.blue, file);
    }
    std::fclose(file);
}

}  // namespace
}  // namespace quenlox

int main(int count, char** arguments) {
    const long rgb = count > 3 ? std::strtol(arguments[3], nullptr, 16) : 0xffbe80;
    quenlox::Run(count > 1 ? arguments[1] : "panel.ppm", count > 2 ? std::atof(arguments[2]) : 4.1,
                 quenlox::Surface::ToColor(static_cast<quenlox::Surface::Pixel>(rgb)),
                 count > 4 && std::string_view(arguments[4]) == "solo");
}
