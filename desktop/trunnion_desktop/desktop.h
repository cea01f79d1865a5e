// Message boxes and sounds through SDL, for a host on a desktop that has neither of its own: a
// library beside trunnion, which itself needs no SDL.
#pragma once

#if defined(TRUNNION_DESKTOP_STATIC)
#define TRUNNION_DESKTOP_API
#elif defined(_WIN32)
#if defined(TRUNNION_DESKTOP_BUILDING)
#define TRUNNION_DESKTOP_API __declspec(dllexport)
#else
#define TRUNNION_DESKTOP_API __declspec(dllimport)
#endif
#else
#define TRUNNION_DESKTOP_API __attribute__((visibility("default")))
#endif

namespace trunnion {

// Shows the library's message boxes and plays its sounds through SDL from now on, in place of the
// handlers before. `title`, UTF-8, stands above every message box; null is "Trunnion". SDL need not
// be initialised, and is not by this call. The host calls it, and what shows or plays, from its
// user interface thread.
//
// A box shows its text, GBK or UTF-8, and one button, and waits for it; the icon follows the type
// flags 0x10 (error) and 0x30 (warning). Where no box can be shown, the library's own way of
// showing it is taken.
//
// A sound is a WAV file, a drive path or a system path, and ends the one before. A file that cannot
// be played leaves that one alone. A sound without the flag 1 is waited for, unless it repeats (8).
TRUNNION_DESKTOP_API void InstallDesktop(const char *title);

// Ends the sound that plays, gives the audio device back and restores the library's own handlers.
TRUNNION_DESKTOP_API void RemoveDesktop();

} // namespace trunnion
