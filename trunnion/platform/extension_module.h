// How a library takes part in an application: it registers with the framework when a process loads
// it and signs off when it is unloaded.
#pragma once

#include "trunnion/export.h"

// The framework's record of a library that extends it; the library holds it for as long as it is
// loaded.
struct AFX_EXTENSION_MODULE {
    int bInitialized = 0;    // 1 from AfxInitExtensionModule to AfxTermExtensionModule
    void *hModule = nullptr; // the system's handle of the library, null where it has none
};

// Registers a library under the system's handle. Returns 1; it may be registered already.
TRUNNION_API int AfxInitExtensionModule(AFX_EXTENSION_MODULE &extension, void *handle);

// Signs a library off and deletes the CDynLinkLibrary objects that were made for it, or all there
// are if `all` is not 0.
TRUNNION_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE &extension, int all = 0);

// A library in the list of those that an application searches. Made with new; from then on the
// framework's.
class TRUNNION_API CDynLinkLibrary {
public:
    // Enters the list at the front.
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE &extension);
    CDynLinkLibrary(const CDynLinkLibrary &) = delete;
    CDynLinkLibrary &operator=(const CDynLinkLibrary &) = delete;
    // Leaves the list.
    virtual ~CDynLinkLibrary();

private:
    friend TRUNNION_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE &extension, int all);

    AFX_EXTENSION_MODULE *owner;
    CDynLinkLibrary *next;
};
