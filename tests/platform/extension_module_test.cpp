// Libraries that register with the framework.
#include "trunnion/platform/extension_module.h"

#include <vector>

#include <gtest/gtest.h>

namespace {

struct Library : CDynLinkLibrary {
    Library(AFX_EXTENSION_MODULE &extension, std::vector<int> &gone, int number)
        : CDynLinkLibrary(extension), deleted(gone), name(number) {}
    ~Library() override { deleted.push_back(name); }
    std::vector<int> &deleted;
    int name;
};

TEST(ExtensionModule, TakesItsLibrariesWithItAndLeavesThoseOfOthers) {
    std::vector<int> gone;
    AFX_EXTENSION_MODULE first;
    AFX_EXTENSION_MODULE second;
    EXPECT_EQ(AfxInitExtensionModule(first, &gone), 1);
    EXPECT_EQ(AfxInitExtensionModule(second, nullptr), 1);
    EXPECT_EQ(first.hModule, &gone);
    new Library(first, gone, 1);
    new Library(second, gone, 2);
    new Library(first, gone, 3);
    const Library *left = new Library(second, gone, 4);
    delete left;

    AfxTermExtensionModule(first);
    EXPECT_EQ(gone, (std::vector<int>{4, 3, 1}));
    EXPECT_EQ(first.bInitialized, 0);
    EXPECT_EQ(second.bInitialized, 1);
    AfxTermExtensionModule(first);
    AfxTermExtensionModule(second);
    EXPECT_EQ(gone, (std::vector<int>{4, 3, 1, 2}));
}

} // namespace
