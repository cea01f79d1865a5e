// What the system offers to a user interface: a running clock and sound.
//
// Internal: the library's own code calls these, hosts do not.
#pragma once

namespace trunnion::detail {

// Milliseconds since some moment before the process started. The clock never steps back, but wraps
// around after 2^32 of them.
unsigned int tickCount();

// Flags of playSound.
inline constexpr unsigned int soundAsync = 1; // returns while the sound plays
inline constexpr unsigned int soundLoop = 8;  // plays until the next call; only with soundAsync

// Plays the file of a sound and ends the one before; null only ends it. True if it was done.
// Goes to the handler of SetSoundHandler if there is one, else to the system.
bool playSound(const char *file, unsigned int flags);
bool playSystemSound(const char *file, unsigned int flags);

} // namespace trunnion::detail
