// SPDX-License-Identifier: MIT
#include "helper/WavUpload.h"

#include <cstddef>
#include <optional>
#include <string>

namespace sayloft::helper {
namespace {

constexpr unsigned formatPcm = 1;
constexpr unsigned formatExtensible = 0xFFFE;
constexpr unsigned wantedChannels = 1;
constexpr unsigned wantedRate = 16000;
constexpr unsigned wantedBits = 16;
constexpr std::size_t riffHeaderSize = 12;
constexpr std::size_t chunkHeaderSize = 8;
constexpr std::size_t pcmFormatSize = 16;
constexpr std::size_t extensibleFormatSize = 40;
constexpr std::size_t subFormatOffset = 24;

// Little-endian, as everything in a RIFF file; the caller has checked that the bytes are there.
unsigned readNumber(std::string_view bytes, std::size_t offset, std::size_t size) {
    unsigned value = 0;
    for (std::size_t i = size; i > 0; --i)
        value = value << 8U | static_cast<unsigned char>(bytes[offset + i - 1]);
    return value;
}

struct Chunk {
    std::string_view id;
    std::string_view content;  ///< what is there of it
    bool isWhole = false;
};

// Takes the next chunk off the front of `rest`; none when no header is left. A chunk of odd size is
// followed by one padding byte.
std::optional<Chunk> takeChunk(std::string_view& rest) {
    if (rest.size() < chunkHeaderSize)
        return std::nullopt;
    const std::size_t size = readNumber(rest, 4, 4);
    const std::string_view id = rest.substr(0, 4);
    rest.remove_prefix(chunkHeaderSize);
    const std::string_view content = rest.substr(0, size);
    rest.remove_prefix(std::min(rest.size(), size + size % 2));
    return Chunk{id, content, content.size() == size};
}

std::optional<Problem> checkFormat(std::string_view format) {
    if (format.size() < pcmFormatSize)
        return Problem{"the WAV file's format chunk is too short"};
    unsigned tag = readNumber(format, 0, 2);
    if (tag == formatExtensible && format.size() >= extensibleFormatSize)
        tag = readNumber(format, subFormatOffset, 2);
    if (tag != formatPcm)
        return Problem{"the WAV file is not PCM"};
    if (readNumber(format, 14, 2) != wantedBits)
        return Problem{"the WAV file is not 16-bit"};
    if (readNumber(format, 2, 2) != wantedChannels)
        return Problem{"the WAV file is not mono"};
    if (readNumber(format, 4, 4) != wantedRate)
        return Problem{"the WAV file's sample rate is not 16000 Hz"};
    if (readNumber(format, 12, 2) != wantedChannels * wantedBits / 8)
        return Problem{"the WAV file's block size does not fit its format"};
    return std::nullopt;
}

Result<Samples> readSamples(const Chunk& data) {
    if (!data.isWhole)
        return Problem{"the WAV file is truncated"};
    if (data.content.size() % 2 != 0)
        return Problem{"the WAV file ends within a sample"};
    Samples samples(data.content.size() / 2);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(readNumber(data.content, 2 * i, 2));
    return samples;
}

}  // namespace

Result<Samples> parseWav(std::string_view file) {
    if (file.size() < riffHeaderSize || !file.starts_with("RIFF") || file.substr(8, 4) != "WAVE")
        return Problem{"the file is not a WAV file"};
    std::string_view rest = file.substr(riffHeaderSize);
    bool formatSeen = false;
    while (const std::optional<Chunk> chunk = takeChunk(rest)) {
        if (chunk->id == "data") {
            if (!formatSeen)
                return Problem{"the WAV file has no format chunk before its data"};
            return readSamples(*chunk);
        }
        if (chunk->id != "fmt ")
            continue;
        if (const std::optional<Problem> problem = checkFormat(chunk->content))
            return *problem;
        formatSeen = true;
    }
    return Problem{"the WAV file is truncated, it has no data"};
}

}  // namespace sayloft::helper
