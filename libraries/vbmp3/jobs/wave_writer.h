// A 16-bit PCM WAVE file being written: a transaction, so that the destination appears whole or not at all. Longer than
// 4 GB it becomes RF64 (EBU Tech 3306); a JUNK chunk holds the place until then. One thread.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "libraries/files/transaction.h"

namespace vbmp3 {

class WaveWriter {
  public:
    // Null when nothing can be written there. `largest` is the length of the data over which the file becomes RF64.
    static std::unique_ptr<WaveWriter> begin(const std::string& path, int sampleRate, int channels,
                                             uint64_t largest = 0xFFFFFF00);
    bool write(std::span<const int16_t> samples);
    FileTransaction::Error commit();  // completes the head and puts the file in its place

  private:
    WaveWriter() = default;
    std::vector<uint8_t> head() const;
    bool writeOut(std::span<const int16_t> samples);

    std::unique_ptr<FileTransaction> file_;
    int sampleRate_ = 0;
    int channels_ = 0;
    uint64_t largest_ = 0;
    uint64_t dataBytes_ = 0;
    std::vector<int16_t> buffer_;
};

}  // namespace vbmp3
