// Sounds through SDL audio.
#include <algorithm>
#include <atomic>
#include <memory>

#include <SDL.h>

#include "handlers.h"
#include "trunnion/containers/char_arr.h"

namespace {

constexpr unsigned int flagAsync = 1;
constexpr unsigned int flagLoop = 8;
constexpr Uint32 pollMilliseconds = 5;

struct WavRelease {
    void operator()(Uint8 *samples) const { SDL_FreeWAV(samples); }
};

// One WAV file on its way to an audio device of its own. The device's thread takes the samples.
class Sound {
public:
    explicit Sound(bool isLoop) : loops(isLoop) {}
    Sound(const Sound &) = delete;
    Sound &operator=(const Sound &) = delete;
    ~Sound() {
        if (device != 0) {
            SDL_CloseAudioDevice(device);
        }
    }

    // False if the file is no WAV file that SDL reads. It comes through the library, which knows
    // the drives.
    bool load(const char *file) {
        CharArr content;
        Uint8 *loaded = nullptr;
        if (content.ReadFileM(file, 0) == 0 || content.GetBoundM() == 0 ||
            SDL_LoadWAV_RW(SDL_RWFromConstMem(content.GetContentConstPtrM(), content.GetBoundM()),
                           1, &spec, &loaded, &length) == nullptr) {
            return false;
        }
        samples.reset(loaded);
        return length > 0;
    }

    bool start() {
        spec.callback = &Sound::fill;
        spec.userdata = this;
        device = SDL_OpenAudioDevice(nullptr, 0, &spec, nullptr, 0);
        if (device == 0) {
            return false;
        }
        SDL_PauseAudioDevice(device, 0);
        return true;
    }

    // Waits until the device has taken the samples and what it asked for behind them.
    void wait() const {
        while (!isOver && SDL_GetAudioDeviceStatus(device) == SDL_AUDIO_PLAYING) {
            SDL_Delay(pollMilliseconds);
        }
    }

private:
    static void SDLCALL fill(void *sound, Uint8 *out, int size) {
        static_cast<Sound *>(sound)->take(out, static_cast<Uint32>(std::max(size, 0)));
    }

    void take(Uint8 *out, Uint32 size) {
        isOver = position == length;
        while (size > 0 && position < length) {
            const Uint32 count = std::min(size, length - position);
            out = std::copy_n(samples.get() + position, count, out);
            size -= count;
            position += count;
            if (loops && position == length) {
                position = 0;
            }
        }
        std::fill_n(out, size, spec.silence);
    }

    const bool loops;
    SDL_AudioSpec spec{};
    SDL_AudioDeviceID device = 0;
    std::unique_ptr<Uint8, WavRelease> samples;
    Uint32 length = 0;
    Uint32 position = 0;
    std::atomic<bool> isOver{false}; // everything was taken at an earlier call
};

// The sound that plays, and SDL's audio for as long as there is one.
std::unique_ptr<Sound> &current() {
    static std::unique_ptr<Sound> sound;
    return sound;
}

void stop() {
    if (current() != nullptr) {
        current().reset();
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
    }
}

} // namespace

namespace trunnion::detail {

int playSoundFile(const char *file, unsigned int flags) {
    if (file == nullptr) {
        stop();
        return 1;
    }
    const bool isLoop = (flags & flagLoop) != 0;
    auto sound = std::make_unique<Sound>(isLoop);
    if (!sound->load(file) || SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) {
        return 0;
    }
    stop();
    if (!sound->start()) {
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        return 0;
    }
    current() = std::move(sound);
    if (!isLoop && (flags & flagAsync) == 0) {
        current()->wait();
    }
    return 1;
}

} // namespace trunnion::detail
