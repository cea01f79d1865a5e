// What the library's own list readers ask of a stream.
#include "trunnion/persistence/detail/stream_access.h"

#include <climits>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"
#include "trunnion/persistence/compress_stream.h"
#include "trunnion/persistence/stream.h"

namespace {

using namespace std::string_literals;
using trunnion::detail::StreamAccess;

TEST(StreamAccess, CountIsHeldAgainstWhatIsLeftOfTheFile) {
    const test::TempDir dir;
    test::writeBytes(dir.path("a"), "0123456789");
    TqIOCL stream;
    EXPECT_EQ(StreamAccess::remaining(stream), LLONG_MAX);
    stream.OpenM(dir.path("a").c_str(), "rb");
    stream.SeekM(1, SEEK_SET);
    EXPECT_EQ(StreamAccess::remaining(stream), 9);
    EXPECT_NO_THROW(StreamAccess::require(stream, 2, 4));
    EXPECT_NO_THROW(StreamAccess::require(stream, 0, 16));
    EXPECT_NO_THROW(StreamAccess::require(stream, 9, 1));
    EXPECT_THROW(StreamAccess::require(stream, 3, 4), int);
    EXPECT_THROW(StreamAccess::require(stream, -1, 4), int);
    EXPECT_THROW(StreamAccess::require(stream, LLONG_MAX / 2, 16), int);
}

TEST(StreamAccess, CompressedStreamCountsTheBlocksToCome) {
    const test::TempDir dir;
    TqCompressIOCL stream;
    EXPECT_EQ(StreamAccess::remaining(stream), 0);
    stream.OpenM(dir.path("a").c_str(), "wb");
    for (const std::string &text : {"0123456789"s, "abc"s, std::string(5000, 'x')}) {
        stream.OutputSM(text.data(), static_cast<int>(text.size()), 0);
        stream.FlushMemoryM();
    }
    char text[8];
    stream.OpenM(dir.path("a").c_str(), "rb");
    stream.InputSM(text, 4, 0);
    EXPECT_EQ(StreamAccess::remaining(stream), 5009);
    stream.InputSM(text, 6, 0);
    stream.InputSM(text, 2, 0); // in the second block
    EXPECT_EQ(StreamAccess::remaining(stream), 5001);
    stream.CloseM();

    // The last block claims more than its bytes can expand to: it counts for nothing.
    std::string file = test::readBytes(dir.path("a"));
    const std::size_t last = file.rfind("\x88\x13\0\0"s);
    file[last + 3] = '\x40';
    test::writeBytes(dir.path("b"), file);
    stream.OpenM(dir.path("b").c_str(), "rb");
    EXPECT_EQ(StreamAccess::remaining(stream), 13);
    stream.InputSM(text, 8, 0);
    EXPECT_EQ(std::string(text, 8), "01234567");
}

TEST(StreamAccess, WordIsSkippedWhateverItsLength) {
    const test::TempDir dir;
    test::writeBytes(dir.path("a"), "\n " + std::string(100000, 'w') + " rest\r\n5\n");
    TqIOCL stream;
    stream.OpenM(dir.path("a").c_str(), "r");
    StreamAccess::skipWord(stream);
    int value = 0;
    stream.InputDM(&value);
    EXPECT_EQ(value, 5);
    EXPECT_THROW(StreamAccess::skipWord(stream), int);
}

} // namespace
