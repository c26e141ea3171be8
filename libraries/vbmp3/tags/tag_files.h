// The tag operations of the C interface on files: reads the record, plans the new file, and writes it as a transaction.
// Results are numbers as of vbmp3_getLastErrorNo. Any thread; holds no state.
#pragma once

#include <functional>
#include <string>

#include "libraries/formats/file_layout.h"
#include "libraries/vbmp3/tags/tag_edit.h"
#include "libraries/vbmp3/tags/tag_fields.h"
#include "libraries/vbmp3/vbmp3.h"

namespace vbmp3 {

// Fills the fields of the record that come from tags. The record is as large as the library knows it.
void FillTags(HeadTailReader& reader, const FileLayout& layout, vbmp3_FileInfo& record);
void FillTags(const ByteSource& file, const FileLayout& layout, vbmp3_FileInfo& record);

// The steps of writing a file, for tests that fail or end the process at each of them. False makes the step fail.
enum class SaveStep { Begin, Write, Commit };
using BeforeStep = std::function<bool(SaveStep)>;

// The fields at any length. `kind` is one kTag* bit, or 0 for what is shown of the file.
int ReadTagFields(const std::string& path, int kind, int& present, TagFields& fields);
// `asShown` is what the caller saw of them; null: everything.
int WriteTagFields(const std::string& path, int kinds, const TagFields& fields, AsShown asShown = nullptr,
                   const BeforeStep& before = {});
// The same with the record of fixed lengths.
int ReadTagFile(const std::string& path, int kind, vbmp3_Tag& tag);
int WriteTagFile(const std::string& path, int kinds, const vbmp3_Tag& tag, const BeforeStep& before = {});
int RemoveTagFile(const std::string& path, int kinds, const BeforeStep& before = {});
int CountExtrasInFile(const std::string& path, int kind, TagExtras& extras);
enum class WrapAs { Rmp, Mp3 };
int ConvertFile(const std::string& source, const std::string& destination, WrapAs form, const BeforeStep& before = {});

}  // namespace vbmp3
