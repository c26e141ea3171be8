// What is known about the sound of a file, as the C interface says it. Pure: any thread.
#pragma once

#include "libraries/formats/stream_info.h"
#include "libraries/vbmp3/vbmp3.h"

namespace vbmp3 {

int FileTypeOf(const StreamInfo& info);  // VBMP3_TYPE_* flags
// Fills the fields of the record that are not tags.
void FillFormat(const StreamInfo& info, vbmp3_FileInfo& record);

}  // namespace vbmp3
