#include "trunnion/platform/extension_module.h"

namespace {

CDynLinkLibrary *firstLibrary = nullptr;

} // namespace

int AfxInitExtensionModule(AFX_EXTENSION_MODULE &module, void *handle) {
    module.bInitialized = 1;
    module.hModule = handle;
    return 1;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE &module, int all) {
    for (CDynLinkLibrary *library = firstLibrary; library != nullptr;) {
        CDynLinkLibrary *const next = library->next;
        if (all != 0 || library->owner == &module) {
            delete library;
        }
        library = next;
    }
    module.bInitialized = 0;
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE &module)
    : owner(&module), next(firstLibrary) {
    firstLibrary = this;
}

CDynLinkLibrary::~CDynLinkLibrary() {
    CDynLinkLibrary **link = &firstLibrary;
    while (*link != this) {
        link = &(*link)->next;
    }
    *link = next;
}
