#include "platform/win32/controls/native_file_drag.h"

#include <ole2.h>
#include <shlobj.h>

#include <cstring>
#include <new>
#include <utility>

#include "platform/win32/dropped_files.h"

namespace quenlox::win32 {
namespace {

// What OLE needs of a thread that drags or takes files; it counts.
class OleSession {
  public:
    OleSession() : begun_(SUCCEEDED(OleInitialize(nullptr))) {}
    ~OleSession() {
        if (begun_) OleUninitialize();
    }
    OleSession(const OleSession&) = delete;
    OleSession& operator=(const OleSession&) = delete;
    explicit operator bool() const { return begun_; }

  private:
    bool begun_;
};

// Counts references and answers for one interface; a new object has one reference.
template <class Interface>
class ComObject : public Interface {
  public:
    virtual ~ComObject() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
        const bool known = IsEqualIID(wanted, __uuidof(Interface)) || IsEqualIID(wanted, IID_IUnknown);
        *object = known ? static_cast<Interface*>(this) : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

  private:
    ULONG references_ = 1;
};

const FORMATETC kFiles{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};

class FileData : public ComObject<IDataObject> {
  public:
    explicit FileData(const std::vector<std::string>& files) : bytes_(DropBytes(files)) {}

    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override {
        if (format->cfFormat != CF_HDROP || format->dwAspect != DVASPECT_CONTENT) return DV_E_FORMATETC;
        return format->tymed & TYMED_HGLOBAL ? S_OK : DV_E_TYMED;
    }
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override {
        *medium = {};
        if (const HRESULT known = QueryGetData(format); FAILED(known)) return known;
        HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes_.size());
        void* place = memory ? GlobalLock(memory) : nullptr;
        if (!place) {
            if (memory) GlobalFree(memory);
            return E_OUTOFMEMORY;
        }
        std::memcpy(place, bytes_.data(), bytes_.size());
        GlobalUnlock(memory);
        medium->tymed = TYMED_HGLOBAL;
        medium->hGlobal = memory;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override {
        *formats = nullptr;
        return direction == DATADIR_GET ? SHCreateStdEnumFmtEtc(1, &kFiles, formats) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC* same) override {
        same->ptd = nullptr;
        return DATA_S_SAMEFORMATETC;
    }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

  private:
    std::string bytes_;
};

class FileSource : public ComObject<IDropSource> {
  public:
    explicit FileSource(HWND home) : home_(home) {}
    bool cameHome() const { return cameHome_; }

    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escaped, DWORD keys) override {
        if (escaped || (keys & MK_RBUTTON)) return DRAGDROP_S_CANCEL;
        if (!(keys & MK_LBUTTON)) return DRAGDROP_S_DROP;
        POINT at{};
        GetCursorPos(&at);
        cameHome_ = home_ && GetAncestor(WindowFromPoint(at), GA_ROOT) == home_;
        return cameHome_ ? DRAGDROP_S_CANCEL : S_OK;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }

  private:
    HWND home_;
    bool cameHome_ = false;
};

std::vector<std::string> FilesIn(IDataObject& data) {
    FORMATETC format = kFiles;
    STGMEDIUM medium{};
    if (FAILED(data.GetData(&format, &medium))) return {};
    std::vector<std::string> files = FilesOf(static_cast<HDROP>(medium.hGlobal));
    ReleaseStgMedium(&medium);
    return files;
}

}  // namespace

bool DragFiles(const std::vector<std::string>& files, HWND home) {
    const OleSession session;
    if (!session || files.empty()) return false;
    auto* data = new FileData(files);
    auto* source = new FileSource(home);
    DWORD effect = 0;
    DoDragDrop(data, source, DROPEFFECT_COPY, &effect);
    const bool cameHome = source->cameHome();
    source->Release();
    data->Release();
    return cameHome;
}

class FileDropTarget::Target : public ComObject<IDropTarget> {
  public:
    Target(HWND window, Over over, FileDropTarget::Drop drop)
        : window_(window), over_(std::move(over)), drop_(std::move(drop)) {}
    // The window goes; others may hold the object still.
    void forget() { over_ = nullptr, drop_ = nullptr; }

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL at, DWORD* effect) override {
        FORMATETC format = kFiles;
        taken_ = data && data->QueryGetData(&format) == S_OK;
        return DragOver(keys, at, effect);
    }
    HRESULT STDMETHODCALLTYPE DragOver(DWORD, POINTL at, DWORD* effect) override {
        *effect &= taken_ ? DROPEFFECT_COPY : DROPEFFECT_NONE;
        const POINT inWindow = from(at);
        if (over_) over_(*effect ? &inWindow : nullptr);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DragLeave() override {
        if (over_) over_(nullptr);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD, POINTL at, DWORD* effect) override {
        *effect &= DROPEFFECT_COPY;
        if (over_) over_(nullptr);
        const std::vector<std::string> files = data && taken_ ? FilesIn(*data) : std::vector<std::string>{};
        if (files.empty()) *effect = DROPEFFECT_NONE;
        if (drop_ && !files.empty()) drop_(files, from(at));
        return S_OK;
    }

  private:
    POINT from(POINTL screen) const {
        POINT at{screen.x, screen.y};
        ScreenToClient(window_, &at);
        return at;
    }

    HWND window_;
    Over over_;
    FileDropTarget::Drop drop_;
    bool taken_ = false;
};

FileDropTarget::FileDropTarget(HWND window, Over over, Drop drop)
    : window_(window), target_(new Target(window, std::move(over), std::move(drop))) {
    if (SUCCEEDED(OleInitialize(nullptr))) {
        RegisterDragDrop(window, target_);
    } else {
        window_ = nullptr;
    }
}

FileDropTarget::~FileDropTarget() {
    target_->forget();
    if (window_) {
        RevokeDragDrop(window_);
        OleUninitialize();
    }
    target_->Release();
}

}  // namespace quenlox::win32
