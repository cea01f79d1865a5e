// Fields of dialogs, zoom and pan, sound and clock.
#include "trunnion/host/dialog_view.h"

#include <cfloat>
#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/list_files.h"
#include "trunnion/platform/system.h"

namespace {

constexpr int field = 7;

struct Dialog {
    explicit Dialog(const char *text = "") {
        edit.SetWindowTextA(text);
        window.AddDlgItem(field, &edit);
    }
    std::string text() const {
        char buffer[64];
        edit.GetWindowTextA(buffer, sizeof buffer);
        return buffer;
    }
    CWnd edit;
    CWnd window;
};

// False if the exchange was ended.
template <class Exchange>
bool exchanged(Dialog &dialog, int saving, Exchange action) {
    CDataExchange exchange(&dialog.window, saving);
    try {
        action(&exchange);
        return true;
    } catch (CUserException *refused) {
        refused->Delete();
        return false;
    }
}

// What saving `text` puts at a place of eight bytes "wwwwwwww"; "refused" if it ends the exchange
// and leaves them.
template <class Action>
std::string saved(const char *text, Action action) {
    Dialog dialog(text);
    char place[] = "wwwwwwww";
    if (exchanged(dialog, 1, [&](CDataExchange *exchange) { action(exchange, place); })) {
        return {place, 8};
    }
    return std::strcmp(place, "wwwwwwww") == 0 ? "refused" : "refused and changed";
}

template <class Value>
std::string stored(Value value) {
    return (test::raw(value) + "wwwwww").substr(0, 8);
}

TEST(DialogFields, IntegersAreSavedByTheirFormatOrRefused) {
    struct Case {
        const char *text, *format;
        std::string place;
    };
    const Case cases[] = {
        {" 12 ", "%d", stored(12)},
        {"-12", "%ld", stored(-12)},
        {"4000000000", "%u", stored(4000000000U)},
        {"-7", "%sd", stored(short{-7})},
        {"40000", "%sd", "refused"},
        {"-1", "%lu", "refused"},
        {"12x", "%d", "refused"},
        {"", "%d", "refused"},
        {"12", "%s", "refused"},
        {"12", "%f", "refused"},
        {"12", "%n", "refused"},
        {"0000000000000000000000000000012345", "%d", stored(12)}, // 31 characters are read
    };
    for (const Case &c : cases) {
        const auto action = [&](CDataExchange *exchange, void *place) {
            slDDX_TextWithFormat(exchange, field, c.format, 0, place);
        };
        EXPECT_EQ(saved(c.text, action), c.place) << c.text << " by " << c.format;
    }
}

TEST(DialogFields, IntegersAreLoadedWith32Or16Bits) {
    struct Case {
        const char *format;
        int value;
        const char *text;
    };
    const Case cases[] = {
        {"%d", INT_MIN, "-2147483648"},
        {"%ld", -1, "-1"},
        {"%u", -1, "4294967295"},
        {"%lu", -1, "4294967295"},
        {"%sd", 0x1FFFF, "-1"},
        {"%su", -1, "65535"},
        {"%s", 1, ""},
        {"%n", 1, ""},
        {"%99d", 1, ""},
    };
    for (const Case &c : cases) {
        Dialog dialog("before");
        EXPECT_TRUE(exchanged(dialog, 0, [&](CDataExchange *exchange) {
            slDDX_TextWithFormat(exchange, field, c.format, 0, c.value);
        }));
        EXPECT_EQ(dialog.text(), c.text) << c.format;
    }
}

TEST(DialogFields, RealsAreSavedAsFloatForPrecision6AndAsDoubleElse) {
    struct Case {
        const char *text;
        std::string asFloat, asDouble;
    };
    const Case cases[] = {
        {" 0.1\t", stored(0.1F), stored(0.1)},
        {"12-", stored(12.0F), stored(12.0)},
        {"1e300", stored(FLT_MAX), stored(1e300)},
        {"-1e999", stored(-FLT_MAX), stored(-DBL_MAX)},
        {"a", "refused", "refused"},
        {"1 2", "refused", "refused"},
    };
    for (const Case &c : cases) {
        for (const int precision : {6, 15}) {
            const auto action = [&](CDataExchange *exchange, void *place) {
                slTextFloatFormat(exchange, field, place, 5.0, precision);
            };
            EXPECT_EQ(saved(c.text, action), precision == 6 ? c.asFloat : c.asDouble) << c.text;
        }
    }
}

TEST(DialogFields, RealsAreLoadedWithAsManyDigitsAsAFieldTakes) {
    struct Case {
        double value;
        int precision;
        const char *text;
    };
    const Case cases[] = {
        {0.1, 6, "0.1"},
        {1234567.0, 6, "1.23457e+06"},
        {0.1, 17, "0.10000000000000001"},
        {-DBL_MAX, INT_MAX, "-1.79769313486231570814527e+308"},
        {2.5, -1, "2.5"},
    };
    for (const Case &c : cases) {
        Dialog dialog;
        EXPECT_TRUE(exchanged(dialog, 0, [&](CDataExchange *exchange) {
            slTextFloatFormat(exchange, field, nullptr, c.value, c.precision);
        }));
        EXPECT_EQ(dialog.text(), c.text);
    }
}

TEST(DialogFields, AMissingControlEndsTheExchange) {
    for (const int saving : {0, 1}) {
        Dialog dialog("3");
        int value = 5;
        EXPECT_FALSE(exchanged(dialog, saving, [&](CDataExchange *exchange) {
            slDDX_TextWithFormat(exchange, field + 1, "%d", 0, &value);
        }));
        EXPECT_FALSE(exchanged(dialog, saving, [&](CDataExchange *exchange) {
            slTextFloatFormat(exchange, field + 1, &value, 1.0, 6);
        }));
        EXPECT_EQ(value, 5);
    }
}

TEST(DialogFields, AFieldWithTheRightTextIsNotTouched) {
    struct Counter : CWnd {
        void SetWindowTextA(const char *text) override {
            ++count;
            CWnd::SetWindowTextA(text);
        }
        int count = 0;
    };
    Counter edit;
    const std::string longText(300, 'a');
    for (const char *text : {"1", "1", "12", "1", longText.c_str(), longText.c_str()}) {
        AfxSetWindowText(&edit, text);
    }
    EXPECT_EQ(edit.count, 5) << "a text longer than is compared is set again";
}

TEST(View, PositionsAreFractionsOfTheClientArea) {
    CWnd window;
    float x = 9, y = 9;
    slGetRealPosM(&window, &x, &y, 3, 4);
    EXPECT_EQ(x, 0.0F);
    EXPECT_EQ(y, 0.0F);
    window.SetClientSize(400, 300);
    slGetRealPosM(&window, &x, &y, 100, -30);
    EXPECT_EQ(x, 0.25F);
    EXPECT_EQ(y, -0.1F);
}

TEST(View, DragsZoomByTheirColumnsAndNeverThroughZero) {
    struct Case {
        int origin, from, to;
        float scale;
    };
    const Case cases[] = {
        {10, 10, 510, 2.0F},   {10, 510, 10, 0.5F},
        {-3, 77, 77, 1.0F},    {0, -2000000000, -2100000000, 1.0F},
        {0, 0, -500, 0.0001F}, {INT_MAX, INT_MAX, INT_MIN, 0.0001F},
    };
    for (const Case &c : cases) {
        EXPECT_FLOAT_EQ(slGetScale({c.origin, 1}, {c.from, 2}, {c.to, 3}), c.scale)
            << c.origin << " " << c.from << " " << c.to;
    }
}

TEST(View, DragsPanUpwardWhereRowsDecrease) {
    float dx = 0, dy = 0;
    slGetPanDistance({5, 6}, {105, 106}, &dx, &dy);
    EXPECT_EQ(dx, 2.0F);
    EXPECT_EQ(dy, -2.0F);
    slGetPanDistance({INT_MIN, 0}, {INT_MAX, 0}, &dx, &dy);
    EXPECT_FLOAT_EQ(dx, 85899345.9F);
}

std::vector<std::string> played;

int notePlayed(const char *file, unsigned int flags) {
    played.push_back((file != nullptr ? file : "null") + (" " + std::to_string(flags)));
    return 1;
}

TEST(Sound, PlaysByItsModeThroughTheHandler) {
    char file[] = "a.wav", empty[] = "";
    slPlayWavSoundM(file, 2); // without a handler: silence
    trunnion::SetSoundHandler(&notePlayed);
    for (int mode = 0; mode <= 4; ++mode) {
        slPlayWavSoundM(file, mode);
        slPlayWavSoundM(empty, mode);
        slPlayWavSoundM(nullptr, mode);
    }
    trunnion::SetSoundHandler(nullptr);
    slPlayWavSoundM(file, 2);
    EXPECT_EQ(played,
              (std::vector<std::string>{"a.wav 9", "a.wav 1", "null 0", "null 0", "null 0"}));
}

TEST(Clock, RunsForwardAndMeasuresAcrossItsWrap) {
    const unsigned int start = tqGetMMTickCount();
    EXPECT_LT(slGetSystemTimeAndElapse(start), 60000U);
    EXPECT_GE(slGetSystemTimeAndElapse(start - 0x80000000U), 0x80000000U);
}

} // namespace
