// The title of a standard MIDI file. Takes any bytes: a hostile or broken file gives what was found until then.
#pragma once

#include <string>
#include <string_view>

namespace quenlox {

// The name of the first track (meta event 3), else its first text (meta event 1), else the name of the first track that
// has one; empty when there is none or the bytes hold no "MThd" chunk. `bytes` is a whole file: "MThd" and "MTrk"
// chunks (Standard MIDI Files 1.0), or those in the data chunk of a RIFF file of form "RMID". Texts are read as
// Shift-JIS, UTF-8 or Latin-1, whatever fits them.
std::string MidiTitle(std::string_view bytes);

}  // namespace quenlox
