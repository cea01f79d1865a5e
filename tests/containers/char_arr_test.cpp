// The byte buffer as text of a file, as string and as message.
#include "trunnion/containers/char_arr.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

CharArr bufferOf(const std::string &bytes) {
    CharArr buffer;
    buffer.SetValueM(static_cast<int>(bytes.size()), bytes.data());
    return buffer;
}

std::string contentOf(const CharArr &buffer) {
    return {buffer.GetContentConstPtrM(), static_cast<std::size_t>(buffer.GetBoundM())};
}

TEST(CharArrText, ReadsAFileBehindReservedBytesAndSavesItBack) {
    const test::TempDir dir;
    test::writeBytes(dir.path("in"), "G0 X1");
    CharArr buffer = bufferOf("abcdefghijkl");
    EXPECT_EQ(buffer.ReadFileM(dir.path("none").c_str(), 0), 0);
    EXPECT_EQ(buffer.ReadFileM(dir.path("in").c_str(), -1), 0);
    EXPECT_EQ(contentOf(buffer), "abcdefghijkl") << "unchanged when nothing can be read";
    EXPECT_EQ(buffer.ReadFileM(dir.path("in").c_str(), 3), 1);
    EXPECT_EQ(contentOf(buffer), "abcG0 X1");
    EXPECT_EQ(buffer.GetAvailableNumM(), 8);
    buffer.SaveFileM(dir.path("out").c_str());
    EXPECT_EQ(test::readBytes(dir.path("out")), "abcG0 X1");
    try {
        buffer.SaveFileM(dir.path("no/such/place").c_str());
        ADD_FAILURE() << "saved into nowhere";
    } catch (int code) {
        EXPECT_EQ(code, 108);
    }
}

TEST(CharArrText, OverwritesAReadOnlyFileWhichStaysReadOnly) {
    namespace fs = std::filesystem;
    const test::TempDir dir;
    const std::string path = dir.path("part.nc");
    test::writeBytes(path, "old and longer");
    fs::permissions(path, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    bufferOf("new").SaveFileM(path.c_str());
    EXPECT_EQ(test::readBytes(path), "new");
    EXPECT_EQ(fs::status(path).permissions() & fs::perms::owner_write, fs::perms::none);
}

TEST(CharArrText, CopiesALineWithOrWithoutItsEnd) {
    const CharArr buffer = bufferOf("ab\r\ncd\nx\n\nlast");
    const struct {
        int start;
        int len;
        int keepEnd;
        const char *line;
    } cases[] = {
        {0, 0, 1, "ab\r\n"}, {0, 0, 0, "ab"},   {4, -1, 1, "cd\n"},          {7, 0, 1, "x\n\n"},
        {10, 0, 1, "last"},  {2, 0, 1, "\r\n"}, {0, 2, 1, "ab\n"},           {4, 1, 1, "c\n"},
        {10, 99, 1, "last"}, {12, 2, 1, "st"},  {0, 2147483647, 1, nullptr},
    };
    for (const auto &c : cases) {
        char out[32];
        ASSERT_EQ(buffer.GetOneLineM(c.start, c.len, out, c.keepEnd), 1);
        EXPECT_EQ(std::string(out), c.line != nullptr ? std::string(c.line) : contentOf(buffer))
            << c.start << ' ' << c.len;
    }
    char out[32] = "kept";
    EXPECT_EQ(buffer.GetOneLineM(14, 0, out, 1), 0);
    EXPECT_EQ(buffer.GetOneLineM(-1, 0, out, 1), 0);
    EXPECT_STREQ(out, "kept");
}

TEST(CharArrText, ProgramNumberReplacesAnOldOneOrGetsALineOfItsOwn) {
    using namespace std::string_literals;
    const struct {
        std::string text;
        std::string expected;
    } cases[] = {
        {"O7777 (X)", "O12 (X)"}, {"G0", "O12\r\nG0"}, {"", "O12\r\n"},
        {"O99", "O12"},           {"O", "O12"},        {"O1\x80\0y"s, "O12y"},
        {"o5", "O12\r\no5"},
    };
    for (const auto &c : cases) {
        CharArr buffer = bufferOf(c.text);
        buffer.AddProgNoM(12);
        EXPECT_EQ(contentOf(buffer), c.expected) << c.text;
    }
}

TEST(CharArrText, TrimsBlanksAndNothingElse) {
    const struct {
        const char *text;
        const char *left;
        const char *right;
    } cases[] = {
        {"  a b  ", "a b  ", "  a b"}, {"\t a", "\t a", "\t a"}, {"   ", "", " "}, {"", "", ""}};
    for (const auto &c : cases) {
        CharArr left = bufferOf(c.text);
        left.TrimL();
        EXPECT_EQ(contentOf(left), c.left);
        EXPECT_EQ(left.GetAvailableNumM(), left.GetBoundM());
        CharArr right = bufferOf(c.text);
        right.TrimR();
        EXPECT_EQ(contentOf(right), c.right);
    }
}

TEST(CharArrText, LineEndIsRemovedAsAPairOrAlone) {
    struct Editor : CharArr {
        using CharArr::delCarrageReturnM;
    } editor;
    editor.SetValueM(7, "a\r\nb\n\rc");
    editor.delCarrageReturnM(0);
    editor.delCarrageReturnM(1);
    EXPECT_EQ(contentOf(editor), "ab\n\rc");
    editor.delCarrageReturnM(2);
    editor.delCarrageReturnM(2);
    editor.delCarrageReturnM(9);
    EXPECT_EQ(contentOf(editor), "abc");
}

TEST(CharArrString, TextAppendedGoesInFrontOfTheTerminator) {
    using namespace std::string_literals;
    CharArr buffer;
    buffer.SetNewStrM("ab");
    EXPECT_EQ(buffer.GetAvailableNumM(), 3);
    EXPECT_EQ(buffer.InsertStringM(3, "cdefghijkl", 10), 1);
    EXPECT_EQ(contentOf(buffer), "abcdefghijkl\0"s);
    EXPECT_EQ(buffer.InsertStringM(1, buffer.GetContentConstPtrM(), 2), 1) << "of itself";
    EXPECT_EQ(contentOf(buffer), "aabbcdefghijkl\0"s);
    EXPECT_EQ(buffer.InsertStringM(99, "x", 1), 0);
    EXPECT_EQ(buffer.InsertStringM(0, "x", 0), 0);
    char out[64];
    EXPECT_EQ(buffer.GetCurStrM(out), 1);
    EXPECT_STREQ(out, "aabbcdefghijkl");
    buffer.SetNewStrM(buffer.GetContentConstPtrM() + 10);
    EXPECT_EQ(contentOf(buffer), "ijkl\0"s);
}

TEST(CharArrString, RemovalCountsLiveBytesAndRefusesWhatIsNotContent) {
    using namespace std::string_literals;
    CharArr buffer = bufferOf("ab\0\x90"s + "cd");
    buffer.DelStringM(-1, 2);
    buffer.DelStringM(0, 7);
    buffer.DelStringM(2147483647, 2);
    EXPECT_EQ(buffer.GetBoundM(), 6);
    buffer.DelStringM(1, 3);
    EXPECT_EQ(contentOf(buffer), "acd");
    EXPECT_EQ(buffer.GetAvailableNumM(), 5) << "zero bytes and bytes from 0x80 up are not counted";
    EXPECT_THROW(buffer.DelStringM(0, -1), int);
}

TEST(CharArrMessage, ValuesComeBackByOffset) {
    CharArr message;
    const float triple[3] = {1, 2, 3};
    message.AddContentM(5);
    message.AddContentM(2.5);
    message.AddContentM(static_cast<short>(-3));
    message.AddContentM('c');
    message.AddContentUM(0xFFFFFFFFU);
    message.AddContentM(0.5F);
    message.AddContent3vfM(triple);
    message.AddContentM(tagPOINT{7, -8});
    message.AddContentM("end");
    EXPECT_EQ(message.GetBoundM(), 4 + 8 + 2 + 1 + 4 + 4 + 12 + 8 + 3);
    EXPECT_EQ(message.GetAvailableNumM(), message.GetBoundM());
    int i = 0;
    double d = 0;
    short s = 0;
    char c = 0;
    float f = 0;
    int at = message.GetContentM(&i, 0);
    at = message.GetContentM(&d, at);
    at = message.GetContentM(&s, at);
    at = message.GetContentM(&c, at);
    EXPECT_EQ(i, 5);
    EXPECT_EQ(d, 2.5);
    EXPECT_EQ(s, -3);
    EXPECT_EQ(c, 'c');
    at = message.GetContentM(&i, at);
    EXPECT_EQ(i, -1);
    at = message.GetContentM(&f, at) + 12;
    at = message.GetContentM(&i, at);
    at = message.GetContentM(&i, at);
    EXPECT_EQ(i, -8);
    for (const int outside : {at, -1, 2147483647}) {
        EXPECT_EQ(message.GetContentM(&i, outside), -1);
        EXPECT_EQ(i, -8);
    }
}

TEST(CharArrMessage, CountedBlocksAreReadWholeOrNotAtAll) {
    CharArr message;
    message.AddContentvcM("abc", 3, 1);
    EXPECT_EQ(message.GetLengthM(), 11) << "room for the length is kept";
    message.AddContentvcM("", 0, 1);
    EXPECT_EQ(message.GetBoundM(), 11);
    char out[8];
    EXPECT_EQ(message.GetContentvcM(out, 8, 0), 7);
    EXPECT_STREQ(out, "abc");
    EXPECT_EQ(message.GetContentvcM(out, 2, 0), -1) << "more than the buffer holds";
    EXPECT_EQ(message.GetContentvcM(out, 8, 7), 11) << "an empty block at the very end";
    CString text;
    EXPECT_EQ(message.GetContentM(text, 0), 7);
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(message.GetContentM(text, 8), -1);
    EXPECT_TRUE(text.IsEmpty());
    CharArr part = bufferOf("old content");
    EXPECT_EQ(message.GetContentvcM(part, 0, 1), 7);
    EXPECT_EQ(part.GetBoundM(), 4);
    EXPECT_EQ(std::string(part.GetContentConstPtrM() + 4, 7), "content") << "what it held stays";
    for (const int length : {4, -1, 2147483647}) {
        CharArr damaged;
        damaged.AddContentM(length);
        damaged.AddContentM("xyz");
        EXPECT_EQ(damaged.GetContentvcM(out, 8, 0), -1);
        EXPECT_EQ(damaged.GetContentvcM(part, 0, 0), -1);
        EXPECT_EQ(damaged.GetContentM(text, 0), -1);
    }
    for (const int pos : {-2147483647 - 1, -1, 12, 2147483647}) {
        EXPECT_EQ(message.GetContentvcM(out, 8, pos), -1);
        EXPECT_EQ(message.GetContentvcM(part, pos, 0), -1);
        EXPECT_EQ(message.GetContentM(text, pos), -1);
    }
}

TEST(CharArrMessage, InsertsClearsAndCopies) {
    CharArr message = bufferOf("abcd");
    EXPECT_EQ(message.InsertContentM(0x64636261, 2), 1);
    EXPECT_EQ(contentOf(message), "ababcdcd");
    EXPECT_EQ(message.InsertContentM(1, 9), 0);
    CharArr copy = bufferOf(std::string(20, 'z'));
    copy.CopyM(message);
    EXPECT_EQ(contentOf(copy), "ababcdcd");
    EXPECT_EQ(copy.GetLengthM(), 24);
    EXPECT_EQ(copy.GetContentPtrM()[23], '\0');
    message.DelContentM();
    EXPECT_EQ(message.GetBoundM(), 0);
    EXPECT_EQ(message.GetContentPtrM()[0], 'a') << "nothing is cleared";
    message.ClearWithZeroM();
    EXPECT_EQ(message.GetContentPtrM()[0], '\0');
}

} // namespace
