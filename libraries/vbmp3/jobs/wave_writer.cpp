#include "libraries/vbmp3/jobs/wave_writer.h"

#include <bit>

namespace vbmp3 {
namespace {

static_assert(std::endian::native == std::endian::little, "samples are written as they stand in memory");

constexpr uint64_t kHeadBytes = 80;
constexpr size_t kBufferSamples = 1 << 17;
constexpr uint32_t kSeeDs64 = 0xFFFFFFFF;

}  // namespace

std::unique_ptr<WaveWriter> WaveWriter::begin(const std::string& path, int sampleRate, int channels, uint64_t largest) {
    std::unique_ptr<WaveWriter> self(new WaveWriter);
    self->file_ = FileTransaction::begin(path);
    if (!self->file_) return nullptr;
    self->sampleRate_ = sampleRate;
    self->channels_ = channels;
    self->largest_ = largest;
    return self->file_->write(self->head()) ? std::move(self) : nullptr;
}

std::vector<uint8_t> WaveWriter::head() const {
    std::vector<uint8_t> bytes;
    bytes.reserve(kHeadBytes);
    const auto text = [&](const char* id) {
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<uint8_t>(id[i]));
    };
    const auto number = [&](uint64_t value, int count) {
        for (int i = 0; i < count; ++i) bytes.push_back(static_cast<uint8_t>(value >> 8 * i));
    };
    const bool large = dataBytes_ > largest_;
    const uint64_t riffBytes = kHeadBytes - 8 + dataBytes_;
    const uint64_t frameBytes = static_cast<uint64_t>(channels_) * 2;
    text(large ? "RF64" : "RIFF");
    number(large ? kSeeDs64 : riffBytes, 4);
    text("WAVE");
    text(large ? "ds64" : "JUNK");
    number(28, 4);
    number(large ? riffBytes : 0, 8);
    number(large ? dataBytes_ : 0, 8);
    number(large ? dataBytes_ / frameBytes : 0, 8);
    number(0, 4);
    text("fmt ");
    number(16, 4);
    number(1, 2);
    number(static_cast<uint64_t>(channels_), 2);
    number(static_cast<uint64_t>(sampleRate_), 4);
    number(static_cast<uint64_t>(sampleRate_) * frameBytes, 4);
    number(frameBytes, 2);
    number(16, 2);
    text("data");
    number(large ? kSeeDs64 : dataBytes_, 4);
    return bytes;
}

bool WaveWriter::write(std::span<const int16_t> samples) {
    // Decoders give a frame at a time; the system is asked for larger pieces.
    dataBytes_ += samples.size_bytes();
    if (buffer_.size() + samples.size() <= kBufferSamples) {
        buffer_.insert(buffer_.end(), samples.begin(), samples.end());
        return true;
    }
    return writeOut(buffer_) && (buffer_.clear(), writeOut(samples));
}

bool WaveWriter::writeOut(std::span<const int16_t> samples) {
    return file_->write({reinterpret_cast<const uint8_t*>(samples.data()), samples.size_bytes()});
}

FileTransaction::Error WaveWriter::commit() {
    writeOut(buffer_);
    file_->writeAt(0, head());
    const FileTransaction::Error error = file_->commit();
    file_.reset();
    return error;
}

}  // namespace vbmp3
