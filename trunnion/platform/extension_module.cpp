#include "trunnion/platform/extension_module.h"

namespace {

CDynLinkLibrary *firstLibrary = nullptr;

} // namespace

int AfxInitExtensionModule(AFX_EXTENSION_MODULE &extension, void *handle) {
    extension.bInitialized = 1;
    extension.hModule = handle;
    return 1;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE &extension, int all) {
    for (CDynLinkLibrary *library = firstLibrary; library != nullptr;) {
        CDynLinkLibrary *const next = library->next;
        if (all != 0 || library->owner == &extension) {
            delete library;
        }
        library = next;
    }
    extension.bInitialized = 0;
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE &extension)
    : owner(&extension), next(firstLibrary) {
    firstLibrary = this;
}

CDynLinkLibrary::~CDynLinkLibrary() {
    CDynLinkLibrary **link = &firstLibrary;
    while (*link != this) {
        link = &(*link)->next;
    }
    *link = next;
}
