// What a file looks like after its tags have been edited, or after it has been turned from MP3 to RMP or back: plans as
// recipes, which somebody else writes. The MPEG frames are always copied as they are.
#pragma once

#include <optional>

#include "libraries/formats/file_layout.h"
#include "libraries/vbmp3/tags/recipe.h"
#include "libraries/vbmp3/tags/tag_fields.h"
#include "libraries/vbmp3/tags/tag_reader.h"

namespace vbmp3 {

// What a caller sees of fields, since his texts have a fixed length. A field that he hands back as he saw it is not
// edited.
using AsShown = TagFields (*)(const TagFields&);

// Writes the fields into the tags of the mask `kinds`. Every other part of the file stays: pictures and unknown frames,
// lyrics, APE, chunks. ID3v2 keeps its version; a new one is 2.3. An appended ID3v2 tag moves to the head. In an RMP
// the SI fields bring the ID3v1 block IID3 along, which stays the last 128 bytes of the file. ID3v1 and ID3v2 are for
// MPEG audio (alone, in RMP, in WAVE), SI for RIFF files; nothing for another combination, for a tag too large for its
// format, and for one that cannot be read whole and would lose what it holds.
std::optional<Recipe> PlanWrite(HeadTailReader& reader, const FileLayout& layout, int kinds, const TagFields& fields,
                                AsShown asShown = nullptr);
// Whether a file of this kind can have the tags of the mask.
bool CanHold(HeadTailReader& reader, const FileLayout& layout, int kinds);
// Takes the tags of the mask off, APE too; those that are not there are no failure.
std::optional<Recipe> PlanRemove(HeadTailReader& reader, const FileLayout& layout, int kinds);

// MP3 (or MP3 in WAVE) to RMP: everything but ID3v1 goes into the data chunk, the fields into SI, ID3v1 into IID3.
std::optional<Recipe> PlanRmp(HeadTailReader& reader, const FileLayout& layout);
// RMP (or MP3 in WAVE) to MP3: what stands in the data chunk, with the SI fields carried over into ID3v2, and ID3v1.
// ID3v2 is added only when ID3v1 cannot hold the fields. Gives back the very file that PlanRmp was given when that had
// an ID3v1 tag and nobody has edited since.
std::optional<Recipe> PlanMp3(HeadTailReader& reader, const FileLayout& layout);

// True for a WAVE whose samples are MPEG audio.
bool IsMpegInWave(HeadTailReader& reader, const FileLayout& layout);

}  // namespace vbmp3
