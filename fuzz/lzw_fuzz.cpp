// The codec: any bytes as a block, blocks whose codes are any bytes, and the way there and back.
#include "trunnion/persistence/lzw.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "fuzz/support/entry.h"
#include "trunnion/persistence/detail/lzw_block.h"

namespace {

using trunnion::detail::lzwHeadSize;

// A block of exactly its own size on the heap, so that a read behind it shows.
std::string decoded(const std::string &block, bool *refused) {
    const auto packed = std::make_unique<unsigned char[]>(block.size());
    std::copy(block.begin(), block.end(), packed.get());
    unsigned char *out = nullptr;
    const unsigned long length = FCLzw().LZW_Decode(packed.get(), block.size(), &out);
    *refused = out == nullptr;
    fuzz::require(out != nullptr || length == 0, "a refused block has no length");
    std::string bytes(reinterpret_cast<char *>(out), length);
    FCLzw().FreeBufferM(&out);
    return bytes;
}

std::string encoded(std::string bytes) {
    unsigned char *out = nullptr;
    const unsigned long length =
        FCLzw().LZW_Encode(reinterpret_cast<unsigned char *>(bytes.data()), bytes.size(), &out);
    std::string block(reinterpret_cast<char *>(out), length);
    FCLzw().FreeBufferM(&out);
    return block;
}

void requireRoundTrip(const std::string &bytes) {
    const std::string block = encoded(bytes);
    fuzz::require(block.size() <= lzwHeadSize + 8 + bytes.size() * 3 / 2, "a bounded block");
    bool refused = false;
    fuzz::require(decoded(block, &refused) == bytes && !refused, "the bytes come back");
}

// The input as codes behind a head that fits them: without its checksum they nearly always end as
// refused, but not before they were decoded.
void decodeCodes(const std::string &codes, std::uint32_t claimed) {
    std::string block(lzwHeadSize, '\0');
    const auto packedLength = static_cast<std::uint32_t>(lzwHeadSize + codes.size());
    trunnion::detail::writeLzwHead({claimed, packedLength, 0},
                                   reinterpret_cast<unsigned char *>(block.data()));
    bool refused = false;
    decoded(block + codes, &refused);
}

} // namespace

void fuzz::run(const std::string &input) {
    bool refused = false;
    const std::string bytes = decoded(input, &refused);
    if (!refused) {
        requireRoundTrip(bytes);
    }
    requireRoundTrip(input);
    for (const std::uint32_t claimed : {1U, 100U, 100000U}) {
        decodeCodes(input, claimed);
    }
    // Long enough to fill the table, which short inputs do not.
    std::string longer;
    while (!input.empty() && longer.size() < 20000) {
        longer += input;
        longer += static_cast<char>(longer.size() * 7);
    }
    requireRoundTrip(longer);
}

std::vector<std::string> fuzz::seeds() {
    std::string counting;
    for (int i = 0; i < 3000; ++i) {
        counting += static_cast<char>(i * i >> 3);
    }
    const std::string texts[] = {"", "a", std::string(1000, 'a'), counting};
    std::vector<std::string> all;
    for (const std::string &text : texts) {
        const std::string block = encoded(text);
        all.insert(all.end(), {text, block, block.substr(lzwHeadSize)});
    }
    return all;
}
