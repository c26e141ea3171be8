// What a conversion is made of, without its window: the choices of the encoder, the messages, and how files are named.
// Pure functions and tables.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "forms/control.h"
#include "platform/dialogs.h"

namespace quenlox {

class Vbmp3;
enum class LibraryError;

enum class Operation { Decode = 0, PlayDecode = 1, Encode = 2 };

inline bool Encodes(Operation operation) { return operation == Operation::Encode; }

inline constexpr int kNoVbr = -1;  // item data of "(使用しない)"
struct EncoderSettings {
    int frequency = 44100;    // Hz
    int bitRate = 128;        // kbit/s as wished, which BitRateAt lowers; with a VBR quality the least
    int vbrQuality = kNoVbr;  // 0 to 9
};
std::vector<ComboBox::Item> FrequencyItems();             // Hz
std::vector<ComboBox::Item> BitRateItems(int frequency);  // kbit/s; those that MPEG audio has at this frequency
int BitRateAt(int frequency, int wished);                 // the highest of them up to the wished one
std::vector<ComboBox::Item> VbrQualityItems();            // the first is "(使用しない)"
bool AreOffered(const EncoderSettings& settings);         // all three can be chosen, the bit rate at some frequency

enum class ConversionError : int {
    Other = 0,
    DecodeSource = 1,
    EncodeSource = 2,
    NoCodec = 3,
    GogoStart = 4,
    GogoEncode = 5,
    GogoFile = 6
};
std::string MessageOf(ConversionError error);
// The error for what a job of the decoding library has failed of.
ConversionError ErrorOfJob(Operation operation, LibraryError error);

FileDialog SourceDialog(Operation operation);
FileDialog DestinationDialog(Operation operation, const std::string& proposed);

struct ConversionJob {
    std::string source;
    std::string destination;
};

// Those of the files that the operation takes, by their extension.
std::vector<std::string> SourcesAmong(const std::vector<std::string>& files, Operation operation);
// The name cut after its last "." and followed by "wav" or "mp3".
std::string ProposedDestination(const std::string& source, Operation operation);
// A job for each source, in `folder` or, when that is empty, beside the source. Two sources never get one destination.
std::vector<ConversionJob> JobsFor(const std::vector<std::string>& sources, Operation operation,
                                   const std::string& folder);

// The texts of the source, where it has any, go into the new MP3 or RMP. Any thread.
void CarryTags(Vbmp3& vbmp3, const ConversionJob& job);

// How long it goes on, from the seconds that have passed and the done part (0 to 1); below 0 as long as it would be
// guessing.
double SecondsLeft(double secondsPassed, double done);
std::string TimeText(double seconds);  // "01:23"; empty below 0

}  // namespace quenlox
