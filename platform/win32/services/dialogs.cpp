#include "platform/dialogs.h"

#include "platform/win32/platform.h"
#include "platform/win32/services/dialogs.h"

#include <commdlg.h>
#include <shobjidl.h>

#include <algorithm>

namespace quenlox::win32 {
namespace {

// Room for the names of some thousands of chosen files.
constexpr std::size_t kManyNames = 1u << 20;

// The window of ours that the user is at; dialogs stand before it and keep it still.
HWND Owner() { return GetActiveWindow(); }

std::wstring Lines(const std::string& text) {
    std::wstring lines;
    const std::wstring wide = Wide(text);
    for (std::size_t i = 0; i < wide.size(); ++i) {
        if (wide[i] == L'\r') {
            lines += L'\n';
            if (i + 1 < wide.size() && wide[i + 1] == L'\n') ++i;
        } else {
            lines += wide[i];
        }
    }
    return lines;
}

UINT IconFlag(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::Stop: return MB_ICONERROR;
        case MessageIcon::Question: return MB_ICONQUESTION;
        case MessageIcon::Warning: return MB_ICONWARNING;
        case MessageIcon::Information: return MB_ICONINFORMATION;
        case MessageIcon::None: break;
    }
    return 0;
}

int Show(const std::string& text, const std::string& title, UINT flags) {
    HWND owner = Owner();
    return MessageBoxW(owner, Lines(text).c_str(), Wide(title).c_str(),
                       flags | (owner ? 0u : MB_SETFOREGROUND | MB_TASKMODAL));
}

// "Name (*.a;*.b)", "*.a;*.b", and the choice of all files, each ended by a NUL.
std::wstring Filter(const FileDialog& dialog) {
    std::wstring filter;
    const auto add = [&filter](const std::string& name, const std::string& pattern) {
        filter += Wide(name + " (" + pattern + ")");
        filter += L'\0';
        filter += Wide(pattern);
        filter += L'\0';
    };
    if (!dialog.filter.empty()) add(dialog.filterName, dialog.filter);
    add("すべてのﾌｧｲﾙ", "*.*");
    return filter;
}

// The extension that a name without one gets: that of the first pattern, if it is a definite one.
std::wstring DefaultExtension(const FileDialog& dialog) {
    const std::string first = dialog.filter.substr(0, dialog.filter.find(';'));
    if (!first.starts_with("*.") || first.find_first_of("?*", 2) != std::string::npos) return {};
    return Wide(first.substr(2));
}

std::vector<std::string> Names(const std::wstring& buffer) {
    std::vector<std::wstring> parts;
    for (const wchar_t* at = buffer.c_str(); *at; at += parts.back().size() + 1) parts.emplace_back(at);
    if (parts.empty()) return {};
    if (parts.size() == 1) return {Narrow(parts.front())};
    std::wstring folder = parts.front();
    if (!folder.ends_with(L'\\')) folder += L'\\';
    std::vector<std::string> names;
    for (std::size_t i = 1; i < parts.size(); ++i) names.push_back(Narrow(folder + parts[i]));
    return names;
}

std::vector<std::string> Choose(const FileDialog& dialog, DWORD flags, bool save) {
    std::wstring buffer(flags & OFN_ALLOWMULTISELECT ? kManyNames : 32768, L'\0');
    const std::wstring proposed = Wide(dialog.fileName);
    if (proposed.size() < buffer.size()) std::copy(proposed.begin(), proposed.end(), buffer.begin());
    const std::wstring title = Wide(dialog.title), filter = Filter(dialog), folder = Wide(dialog.folder);
    const std::wstring extension = DefaultExtension(dialog);
    OPENFILENAMEW open{};
    open.lStructSize = sizeof open;
    open.hwndOwner = Owner();
    open.lpstrFilter = filter.c_str();
    open.lpstrFile = buffer.data();
    open.nMaxFile = static_cast<DWORD>(buffer.size());
    open.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
    open.lpstrTitle = title.empty() ? nullptr : title.c_str();
    open.lpstrDefExt = save && !extension.empty() ? extension.c_str() : nullptr;
    open.Flags = flags | OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_ENABLESIZING;
    if (!(save ? GetSaveFileNameW(&open) : GetOpenFileNameW(&open))) return {};
    return Names(buffer);
}

std::optional<std::string> First(std::vector<std::string> names) {
    if (names.empty()) return std::nullopt;
    return std::move(names.front());
}

template <typename Interface>
void ReleaseInterface(Interface* object) {
    object->Release();
}
template <typename Interface>
using Com = Owned<Interface*, ReleaseInterface<Interface>>;

class DialogsWin32 : public Dialogs {
  public:
    void message(const std::string& text, MessageIcon icon, const std::string& title) override {
        Show(text, title, MB_OK | IconFlag(icon));
    }
    bool confirm(const std::string& question, const std::string& title) override {
        return Show(question, title, MB_YESNO | MB_ICONQUESTION) == IDYES;
    }
    bool confirmLoss(const std::string& question, const std::string& title) override {
        return Show(question, title, MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2) == IDYES;
    }
    std::optional<bool> confirmOrCancel(const std::string& question, const std::string& title) override {
        const int answer = Show(question, title, MB_YESNOCANCEL | MB_ICONQUESTION);
        if (answer == IDCANCEL) return std::nullopt;
        return answer == IDYES;
    }

    std::optional<std::string> openFile(const FileDialog& dialog) override {
        return First(Choose(dialog, OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST, false));
    }
    std::vector<std::string> openFiles(const FileDialog& dialog) override {
        return Choose(dialog, OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_ALLOWMULTISELECT, false);
    }
    std::optional<std::string> saveFile(const FileDialog& dialog) override {
        return First(Choose(dialog, OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST, true));
    }

    std::optional<std::string> chooseFolder(const std::string& title, const std::string& folder) override {
        IFileOpenDialog* made = nullptr;
        if (FAILED(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&made))))
            return std::nullopt;
        const Com<IFileOpenDialog> dialog(made);
        FILEOPENDIALOGOPTIONS options = 0;
        made->GetOptions(&options);
        made->SetOptions(options | FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM | FOS_NOCHANGEDIR);
        made->SetTitle(Wide(title).c_str());
        IShellItem* start = nullptr;
        if (!folder.empty() &&
            SUCCEEDED(SHCreateItemFromParsingName(Wide(folder).c_str(), nullptr, IID_PPV_ARGS(&start)))) {
            made->SetFolder(start);
            start->Release();
        }
        IShellItem* item = nullptr;
        if (FAILED(made->Show(Owner())) || FAILED(made->GetResult(&item))) return std::nullopt;
        const Com<IShellItem> chosen(item);
        PWSTR path = nullptr;
        if (FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &path))) return std::nullopt;
        std::string result = Narrow(path);
        CoTaskMemFree(path);
        return result;
    }

    std::optional<std::string> chooseFont(const std::string& face) override {
        LOGFONTW font{};
        font.lfHeight = -MulDiv(12, static_cast<int>(GetDpiForSystem()), 72);
        font.lfCharSet = DEFAULT_CHARSET;
        const std::wstring name = Wide(face);
        std::copy_n(name.begin(), std::min<std::size_t>(name.size(), LF_FACESIZE - 1), font.lfFaceName);
        CHOOSEFONTW choose{};
        choose.lStructSize = sizeof choose;
        choose.hwndOwner = Owner();
        choose.lpLogFont = &font;
        choose.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT | CF_FORCEFONTEXIST | CF_NOVERTFONTS | CF_NOSCRIPTSEL |
                       CF_NOSIZESEL | CF_NOSTYLESEL;
        if (!ChooseFontW(&choose) || font.lfFaceName[0] == L'\0') return std::nullopt;
        return Narrow(font.lfFaceName);
    }

    std::optional<std::string> inputText(const std::string& prompt, const std::string& text,
                                         const std::string& title) override {
        const auto answer = InputBox(Owner(), Wide(title), Lines(prompt), Wide(text));
        if (!answer) return std::nullopt;
        return Narrow(*answer);
    }
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<Dialogs> MakeDialogs() { return std::make_unique<win32::DialogsWin32>(); }

}  // namespace quenlox
