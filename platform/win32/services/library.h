// A dynamic library loaded from a folder, and the addresses of what it exports.
#pragma once

#include "platform/win32/win32.h"

namespace quenlox::win32 {

class Library {
  public:
    // Looks in `folder` only, so that no library of that name from elsewhere is taken; what it needs itself comes from
    // there or from the system.
    Library(const std::string& folder, const std::string& name)
        : module_(LoadLibraryExW(WidePath(folder + (folder.ends_with('\\') ? "" : "\\") + name).c_str(), nullptr,
                                 LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32)) {}

    bool loaded() const { return static_cast<bool>(module_); }
    bool complete() const { return loaded() && !missing_; }  // everything asked for so far is there

    template <typename Function>
    void resolve(Function*& function, const char* name) {
        function = module_ ? reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_.get(), name)))
                           : nullptr;
        if (!function) missing_ = true;
    }

  private:
    OwnedLibrary module_;
    bool missing_ = false;
};

}  // namespace quenlox::win32
