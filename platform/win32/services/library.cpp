#include "platform/win32/services/library.h"

#include "platform/win32/platform.h"

namespace quenlox {

void TrustSystemLibrariesOnly() {
    SetDllDirectoryW(L"");  // the old order, which a caller may still ask for, goes without the current folder
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
}

}  // namespace quenlox
