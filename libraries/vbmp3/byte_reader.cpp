#include "libraries/vbmp3/byte_reader.h"

#include <algorithm>
#include <cstring>

namespace vbmp3 {

std::vector<uint8_t> ByteReader::bytes(uint64_t offset, size_t count)
{
    const uint64_t total = size();
    if (offset >= total)
        return {};
    std::vector<uint8_t> out(size_t(std::min<uint64_t>(count, total - offset)));
    out.resize(readAt(offset, out));
    return out;
}

size_t MemoryReader::readAt(uint64_t offset, std::span<uint8_t> out)
{
    if (offset >= data_.size())
        return 0;
    const size_t count = std::min(out.size(), data_.size() - size_t(offset));
    if (count > 0)
        std::memcpy(out.data(), data_.data() + offset, count);
    return count;
}

std::span<const uint8_t> BufferedReader::view(uint64_t offset, size_t count)
{
    const bool inside = offset >= blockOffset_ && offset - blockOffset_ <= block_.size()
                        && block_.size() - size_t(offset - blockOffset_) >= count;
    if (!inside) {
        block_.resize(std::max(count, blockSize_));
        block_.resize(inner_.readAt(offset, block_));
        blockOffset_ = offset;
    }
    return std::span<const uint8_t>(block_).subspan(size_t(offset - blockOffset_));
}

size_t BufferedReader::readAt(uint64_t offset, std::span<uint8_t> out)
{
    const auto found = view(offset, out.size());
    const size_t count = std::min(out.size(), found.size());
    if (count > 0)
        std::memcpy(out.data(), found.data(), count);
    return count;
}

} // namespace vbmp3
