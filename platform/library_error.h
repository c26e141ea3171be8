// Why a call of vbmp3.dll or gogo.dll has failed, and the one wording of it for whoever is told. Values and a table:
// any thread.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace quenlox {

enum class LibraryError {
    None,
    NotFound,  // the file or the source is missing or unreadable
    Format,    // not a file that can be decoded, or not one that can have this tag
    NotWave,   // gogo.dll: the source is no WAVE file with samples, or in a coding that is not read
    NotOpen,   // no file is open
    Memory,
    Write,           // the destination cannot be written: no such folder, disk full
    SameFile,        // the destination is the source
    NoCodec,         // the system has no MP3 encoder
    Tag,             // a tag that cannot be edited without losing what it holds, or too large with it
    Settings,        // gogo.dll: the encoder refuses the settings
    Busy,            // a job runs already
    Locked,          // by another program, or read-only
    DeviceBusy,      // others hold the sound device
    Superseded,      // another file was opened, or this one closed, while it was being opened
    NotInitialised,  // before init, or out of its turn
    Argument,
    Other  // a number that this program does not know
};

// One line without a full stop; empty for None.
constexpr std::string_view TextOf(LibraryError error) {
    constexpr std::array<std::string_view, static_cast<std::size_t>(LibraryError::Other) + 1> kTexts{
        "",
        "ファイルが見つからないか、読み取れません",
        "対応していない形式のファイルです",
        "変換元が、変換できる形式のWAVEファイルではありません",
        "ファイルが開かれていません",
        "メモリが足りません",
        "保存先に書き込めません",
        "変換元と保存先が同じファイルです",
        "MP3のコーデックがありません",
        "タグの形が特殊か大きすぎるため、中身を失わずに書き換えることができません",
        "この設定ではエンコードできません",
        "ほかの変換を実行中です",
        "ファイルが読み取り専用か、ほかのプログラムで使用中です",
        "サウンドデバイスがほかのプログラムで使用中です",
        "ほかのファイルが開かれました",
        "ライブラリが初期化されていません",
        "指定が正しくありません",
        "ライブラリのエラーです",
    };
    return kTexts[static_cast<std::size_t>(error)];
}

// What a call gives, or why it gives nothing.
template <class Value>
class LibraryResult {
  public:
    LibraryResult(Value value) : value_(std::move(value)) {}
    LibraryResult(LibraryError error) : error_(error) {}

    explicit operator bool() const { return value_.has_value(); }
    const Value& operator*() const { return *value_; }
    const Value* operator->() const { return &*value_; }
    LibraryError error() const { return error_; }  // None with a value

  private:
    std::optional<Value> value_;
    LibraryError error_ = LibraryError::None;
};

}  // namespace quenlox
