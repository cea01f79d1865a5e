// Uses a class, an inline function and a free function of the library, and says that it ran.
#include <cstdio>

#include "trunnion/trunnion.h"
#ifdef WITH_DESKTOP
#include "trunnion_desktop/desktop.h"
#endif

static_assert(static_cast<char>(-1) < 0, "compiled without -fsigned-char");

int main() {
#ifdef WITH_DESKTOP
    trunnion::InstallDesktop(nullptr);
#endif
    IntArr list;
    list.AddItemM(7);
    float vector[3] = {0.0F, 3.0F, 4.0F};
    const int hasDirection = slNormalize(vector);
    TqIOCL stream;
    const bool right = list[0] == 7 && hasDirection == 1 && vector[1] == 0.6F && stream.EofM() == 1;
    std::puts(right ? "consumer: ok" : "consumer: wrong");
    return right ? 0 : 1;
}
