// Sounds as they reach the audio device: SDL's disk driver writes the samples to a file.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "desktop/handlers.h"
#include "tests/support/temp_dir.h"
#include "trunnion/host/dialog_view.h"
#include "trunnion_desktop/desktop.h"

namespace {

using Samples = std::vector<std::int16_t>;

constexpr int modeLoop = 1;
constexpr int modeOnce = 2;
constexpr int modeStop = 3;

template <class Value>
void append(std::string &bytes, Value value) {
    bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
}

// A WAV file of 16 bits, one channel, 8000 samples a second.
std::string wavOf(const Samples &samples) {
    constexpr std::uint32_t rate = 8000;
    const auto dataBytes = static_cast<std::uint32_t>(2 * samples.size());
    std::string bytes = "RIFF";
    append(bytes, 36 + dataBytes);
    bytes += "WAVEfmt ";
    append(bytes, std::uint32_t{16});
    append(bytes, std::uint16_t{1}); // plain samples
    append(bytes, std::uint16_t{1});
    append(bytes, rate);
    append(bytes, 2 * rate);
    append(bytes, std::uint16_t{2});
    append(bytes, std::uint16_t{16});
    bytes += "data";
    append(bytes, dataBytes);
    for (const std::int16_t sample : samples) {
        append(bytes, sample);
    }
    return bytes;
}

// Not one of them is silence.
Samples ramp(int count) {
    Samples samples;
    for (int i = 1; i <= count; ++i) {
        samples.push_back(static_cast<std::int16_t>(i));
    }
    return samples;
}

class DesktopSound : public testing::Test {
protected:
    DesktopSound() {
        setenv("SDL_AUDIODRIVER", "disk", 1);
        setenv("SDL_DISKAUDIOFILE", device.c_str(), 1);
        setenv("SDL_DISKAUDIODELAY", "2", 1);
        trunnion::InstallDesktop(nullptr);
    }
    ~DesktopSound() override { trunnion::RemoveDesktop(); }

    std::string write(const char *name, const std::string &bytes) const {
        std::string path = directory.path(name);
        test::writeBytes(path, bytes);
        return path;
    }

    static void play(std::string path, int mode) { slPlayWavSoundM(path.data(), mode); }

    std::uintmax_t deviceBytes() const {
        std::error_code failure;
        const std::uintmax_t size = std::filesystem::file_size(device, failure);
        return failure ? 0 : size;
    }

    // True once the device has got so many samples of the sound and what follows it.
    bool hasGot(std::size_t samples) const {
        for (int i = 0; i < 1500 && got().size() < samples; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return got().size() >= samples;
    }

    // What the device has got by now, but for the silence that it takes before the sound is let go.
    // The file goes on growing, on a busy machine faster than a reader follows.
    Samples got() const {
        Samples samples(deviceBytes() / 2);
        std::ifstream file(device, std::ios::binary);
        file.read(reinterpret_cast<char *>(samples.data()),
                  static_cast<std::streamsize>(2 * samples.size()));
        samples.erase(samples.begin(), std::find_if(samples.begin(), samples.end(),
                                                    [](auto sample) { return sample != 0; }));
        return samples;
    }

    test::TempDir directory;
    const std::string device = directory.path("device");
};

TEST_F(DesktopSound, OnceIsFollowedBySilence) {
    const Samples samples = ramp(10000);
    play(write("once.wav", wavOf(samples)), modeOnce);
    ASSERT_TRUE(hasGot(30000));
    slPlayWavSoundM(nullptr, modeStop);
    Samples expected = samples;
    expected.resize(got().size());
    EXPECT_EQ(got(), expected);
}

TEST_F(DesktopSound, SoundWithoutTheFlagForReturningAtOnceIsWaitedFor) {
    const Samples samples = ramp(10000);
    const std::string path = write("waited.wav", wavOf(samples));
    EXPECT_NE(trunnion::detail::playSoundFile(path.c_str(), 0), 0);
    Samples played = got();
    ASSERT_GE(played.size(), samples.size()) << "it has been played when the call returns";
    played.resize(samples.size());
    EXPECT_EQ(played, samples);
}

TEST_F(DesktopSound, LoopRepeatsWithoutAGapUntilItIsStopped) {
    const Samples samples = ramp(1000); // far less than the device asks for at a time
    std::string path = write("loop.wav", wavOf(samples));
    std::string drivePath = "C:" + path;
    for (char &character : drivePath) {
        character = character == '/' ? '\\' : character;
    }
    play(drivePath, modeLoop);
    ASSERT_TRUE(hasGot(20000));
    slPlayWavSoundM(nullptr, modeStop);
    const std::uintmax_t stoppedAt = deviceBytes();
    const Samples played = got();
    for (std::size_t i = 0; i < played.size(); ++i) {
        ASSERT_EQ(played[i], samples[i % samples.size()]) << i;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(deviceBytes(), stoppedAt);
}

TEST_F(DesktopSound, FileThatCannotBePlayedLeavesTheSoundAlone) {
    play(write("loop.wav", wavOf(ramp(1000))), modeLoop);
    ASSERT_TRUE(hasGot(4096));
    const std::string whole = wavOf(ramp(1000));
    for (const std::string &bytes :
         {std::string(), std::string("no sound"), whole.substr(0, 30), "RIFX" + whole.substr(4)}) {
        play(write("bad.wav", bytes), modeOnce);
    }
    play(directory.path("missing.wav"), modeOnce);
    EXPECT_TRUE(hasGot(got().size() + 20000));
    play(write("next.wav", wavOf(Samples(5000, 77))), modeOnce);
    ASSERT_TRUE(hasGot(5000));
    slPlayWavSoundM(nullptr, modeStop);
    EXPECT_EQ(got()[0], 77);
}

} // namespace
