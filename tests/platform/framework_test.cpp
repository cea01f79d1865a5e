// The value classes of the framework.
#include "trunnion/platform/framework.h"
#include "trunnion/platform/system.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace {

TEST(CString, OwnsItsTextAlsoWhenAssignedFromItself) {
    CString text = "mode wb";
    text = static_cast<const char *>(text) + 5;
    EXPECT_STREQ(text, "wb");
    text += static_cast<const char *>(text);
    EXPECT_STREQ(text, "wbwb");
    EXPECT_EQ(text.GetLength(), 4);
    text.Empty();
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CString, ComparesWithAndWithoutRegardToCase) {
    const CString text = "Wb";
    EXPECT_NE(text.Compare("wb"), 0);
    EXPECT_EQ(text.CompareNoCase("wB"), 0);
    EXPECT_LT(text.CompareNoCase("wba"), 0);
    EXPECT_GT(text.CompareNoCase("w"), 0);
    EXPECT_TRUE(text == "Wb");
}

std::string shown;

int noteMessage(const char *text, unsigned int /*type*/) {
    shown = text;
    return 7;
}

TEST(MemoryException, IsRaisedByAnImpossibleRequestAndReportsThroughTheHandler) {
    trunnion::SetMessageBoxHandler(&noteMessage);
    try {
        volatile std::size_t size = SIZE_MAX / 2;
        trunnion::detail::frameworkFree(trunnion::detail::frameworkAllocate(size));
        ADD_FAILURE() << "no exception";
    } catch (CMemoryException *exception) {
        EXPECT_EQ(exception->ReportError(), 7);
        exception->Delete();
    }
    trunnion::SetMessageBoxHandler(nullptr);
    EXPECT_FALSE(shown.empty());
}

} // namespace
