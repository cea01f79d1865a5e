// What happens when a process loads the library and when it unloads it.
#include <new>

#include "trunnion/persistence/detail/hidden_streams.h"
#include "trunnion/platform/extension_module.h"

namespace trunnion::detail {

namespace {

// Registers with the framework, and signs off behind the streams, which close their files first.
class Attachment {
public:
    Attachment() {
        if (AfxInitExtensionModule(extension, nullptr) != 0) {
            // The framework's from here on.
            static_cast<void>(new (std::nothrow) CDynLinkLibrary(extension));
        }
    }
    Attachment(const Attachment &) = delete;
    Attachment &operator=(const Attachment &) = delete;
    ~Attachment() {
        streams.compressed.reset();
        streams.text.reset();
        AfxTermExtensionModule(extension);
    }

    HiddenStreams streams;

private:
    AFX_EXTENSION_MODULE extension;
};

Attachment attachment;

} // namespace

HiddenStreams &hiddenStreams() {
    return attachment.streams;
}

} // namespace trunnion::detail
