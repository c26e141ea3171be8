#include "tests/gogo/support.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>

#include <mpg123.h>

namespace gogo::test {
namespace {

void put(Bytes& bytes, uint64_t value, int count)
{
    for (int i = 0; i < count; ++i)
        bytes.push_back(uint8_t(value >> 8 * i));
}

void put(Bytes& bytes, const char* text) { bytes.insert(bytes.end(), text, text + 4); }

void putSample(Bytes& bytes, float sample, const WaveForm& form)
{
    uint64_t raw = 0;
    if (form.isFloat && form.bits == 64) {
        const double value = double(sample);
        std::memcpy(&raw, &value, 8);
    } else if (form.isFloat) {
        std::memcpy(&raw, &sample, 4);
    } else {
        const double full = std::ldexp(1.0, form.bits - 1);
        const auto value = int64_t(std::clamp(std::round(double(sample) * full), -full, full - 1));
        raw = uint64_t(form.bits == 8 ? value + 128 : value);
    }
    put(bytes, raw, form.bits / 8);
}

} // namespace

Samples music(int sampleRate, int channels, int64_t frames)
{
    std::mt19937 random(7);
    std::normal_distribution<float> noise(0, 1);
    Samples samples(size_t(frames) * size_t(channels));
    const int64_t beat = sampleRate / 4;
    for (int64_t start = 0, n = 0; start < frames; start += beat, ++n) {
        const double hertz = 110 * std::exp2(double((n * 7) % 24) / 12);
        const int64_t end = std::min(frames, start + 4 * beat);
        for (int64_t i = start; i < end; ++i) {
            const double time = double(i - start) / sampleRate;
            double tone = 0;
            for (int k = 1; k <= 8; ++k)
                tone += std::sin(2 * std::numbers::pi * hertz * k * time) / k;
            const double hit = n % 2 == 0 && time < 0.05 ? double(noise(random)) * std::exp(-time * 90) : 0;
            for (int c = 0; c < channels; ++c) {
                const double side = channels == 1 ? 1 : (n + c) % 2 == 0 ? 1 : 0.4;
                samples[size_t(i * channels + c)] += float(0.13 * side * tone * std::exp(-4 * time) + 0.15 * hit);
            }
        }
    }
    for (float& sample : samples)
        sample = std::clamp(sample, -0.95f, 0.95f);
    return samples;
}

Bytes wave(const Samples& samples, int sampleRate, int channels, const WaveForm& form)
{
    const int block = channels * form.bits / 8;
    Bytes fmt;
    put(fmt, form.extensible ? 0xFFFE : form.isFloat ? 3 : 1, 2);
    put(fmt, uint64_t(channels), 2);
    put(fmt, uint64_t(sampleRate), 4);
    put(fmt, uint64_t(sampleRate) * uint64_t(block), 4);
    put(fmt, uint64_t(block), 2);
    put(fmt, uint64_t(form.bits), 2);
    if (form.extensible) {
        put(fmt, 22, 2);
        put(fmt, uint64_t(form.bits), 2);
        put(fmt, channels == 6 ? 0x3F : channels == 2 ? 3 : 4, 4);
        put(fmt, form.isFloat ? 3 : 1, 2);
        const uint8_t guid[] = {0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
        fmt.insert(fmt.end(), std::begin(guid), std::end(guid));
    }
    Bytes data;
    for (const float sample : samples)
        putSample(data, sample, form);

    using Size = WaveForm::Size;
    const bool rf64 = form.size == Size::Rf64;
    Bytes file;
    put(file, rf64 ? "RF64" : "RIFF");
    put(file, form.size == Size::Told ? 28 + fmt.size() + data.size() : form.size == Size::Zero ? 0 : 0xFFFFFFFF, 4);
    put(file, "WAVE");
    if (rf64) {
        put(file, "ds64");
        put(file, 28, 4);
        put(file, 64 + fmt.size() + data.size(), 8);
        put(file, data.size(), 8);
        put(file, samples.size() / size_t(channels), 8);
        put(file, 0, 4);
    }
    put(file, "fmt ");
    put(file, fmt.size(), 4);
    file.insert(file.end(), fmt.begin(), fmt.end());
    put(file, "data");
    put(file, form.size == Size::Told ? data.size() : form.size == Size::Zero ? 0 : 0xFFFFFFFF, 4);
    file.insert(file.end(), data.begin(), data.end());
    return file;
}

Decoded decode(const std::string& path)
{
    Decoded result;
    mpg123_init();
    mpg123_handle* handle = mpg123_new(nullptr, nullptr);
    mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_FORCE_FLOAT | MPG123_QUIET | MPG123_GAPLESS, 0);
    long rate = 0;
    int channels = 0, encoding = 0;
    if (mpg123_open(handle, path.c_str()) == MPG123_OK && mpg123_getformat(handle, &rate, &channels, &encoding) == MPG123_OK) {
        result.sampleRate = int(rate);
        result.channels = channels;
        std::vector<unsigned char> block(65536);
        size_t got = 0;
        int state = MPG123_OK;
        while (state == MPG123_OK) {
            state = mpg123_read(handle, block.data(), block.size(), &got);
            const size_t at = result.samples.size();
            result.samples.resize(at + got / sizeof(float));
            std::memcpy(result.samples.data() + at, block.data(), got);
        }
    }
    mpg123_delete(handle);
    return result;
}

double differenceDb(const Samples& a, const Samples& b, int channels, int64_t begin, int64_t end)
{
    double sound = 1e-12, error = 1e-12;
    for (size_t i = size_t(begin * channels); i < size_t(end * channels); ++i) {
        const double x = double(a[i]), y = i < b.size() ? double(b[i]) : 0;
        sound += x * x;
        error += (x - y) * (x - y);
    }
    return 10 * std::log10(error / sound);
}

int64_t encode(const Settings& settings, int threads)
{
    Error error = Error::None;
    const auto coder = Coder::open(settings, threads, error);
    if (!coder)
        return -int64_t(error);
    int64_t frames = 0;
    while (!coder->finished()) {
        if (const Error failed = coder->processFrame(); failed != Error::None)
            return -int64_t(failed);
        ++frames;
    }
    return frames;
}

} // namespace gogo::test
