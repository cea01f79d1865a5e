// The streams behind the flat interface.
#pragma once

#include <memory>

#include "trunnion/persistence/compress_stream.h"
#include "trunnion/persistence/stream.h"

namespace trunnion::detail {

// Null until the first file of a kind is opened.
struct HiddenStreams {
    std::unique_ptr<TqCompressIOCL> compressed;
    std::unique_ptr<TqIOCL> text;
};

// The one pair; it lives as long as the library is loaded.
HiddenStreams &hiddenStreams();

} // namespace trunnion::detail
