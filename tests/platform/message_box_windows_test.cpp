// The message box of the system, answered by the test in place of a person.
#include "trunnion/platform/framework.h"

#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <windows.h>

namespace {

// A file name in UTF-8 stands behind a text in GBK.
constexpr const wchar_t *shownText = L"\u6587\u4EF6\u8BFB\u53D6\u5931\u8D25: C:\\\u00E4.stl";

BOOL CALLBACK findText(HWND child, LPARAM found) {
    wchar_t text[256] = L"";
    GetWindowTextW(child, text, 256);
    *reinterpret_cast<bool *>(found) |= std::wstring(text) == shownText;
    return TRUE;
}

BOOL CALLBACK answerBox(HWND box, LPARAM found) {
    EnumChildWindows(box, &findText, found);
    if (*reinterpret_cast<bool *>(found)) {
        PostMessageW(box, WM_COMMAND, IDOK, 0);
        return FALSE;
    }
    return TRUE;
}

BOOL CALLBACK closeBox(HWND box, LPARAM /*unused*/) {
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    return TRUE;
}

bool canShowWindows() {
    const HWND window = CreateWindowA("STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 9, 9, nullptr,
                                      nullptr, nullptr, nullptr);
    return window != nullptr && DestroyWindow(window) != FALSE;
}

TEST(MessageBoxWindows, ShowsTheTextAndWaitsOrWritesItWhereNoBoxCanBeShown) {
    bool found = false;
    const bool isShown = canShowWindows();
    const DWORD showing = GetCurrentThreadId();
    std::thread person([&found, isShown, showing] {
        for (int i = 0; isShown && i < 400 && !found; ++i) {
            Sleep(50);
            EnumThreadWindows(showing, &answerBox, reinterpret_cast<LPARAM>(&found));
        }
        EnumThreadWindows(showing, &closeBox, 0); // with another text it would wait forever
    });
    testing::internal::CaptureStderr();
    EXPECT_EQ(AfxMessageBox("\xCE\xC4\xBC\xFE\xB6\xC1\xC8\xA1\xCA\xA7\xB0\xDC: C:\\\xC3\xA4.stl"),
              IDOK);
    const std::string written = testing::internal::GetCapturedStderr();
    person.join();
    EXPECT_EQ(found, isShown);
    EXPECT_EQ(written, isShown ? "" : "\u6587\u4EF6\u8BFB\u53D6\u5931\u8D25: C:\\\u00E4.stl\n");
}

} // namespace
