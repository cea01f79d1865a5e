// What the library's own list readers ask of a stream.
#include "trunnion/persistence/detail/stream_access.h"

#include <climits>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"
#include "trunnion/persistence/stream.h"

namespace {

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
