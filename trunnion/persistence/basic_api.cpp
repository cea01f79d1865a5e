#include "trunnion/persistence/basic_api.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "trunnion/host/paths.h"
#include "trunnion/persistence/detail/hidden_streams.h"
#include "trunnion/platform/framework.h"

using namespace trunnion::detail;

namespace {

// The result of `operation`, or 0 if it throws.
template <class Operation>
int caught(Operation operation) {
    try {
        return operation();
    } catch (CMemoryException *exhausted) {
        exhausted->Delete();
        return 0;
    } catch (...) {
        return 0;
    }
}

// Does `operation` with the stream, if there is one, whatever it returns.
template <class Stream, class Operation>
int with(const std::unique_ptr<Stream> &stream, Operation operation) {
    if (stream == nullptr) {
        return 0;
    }
    operation(*stream);
    return 1;
}

template <class Operation>
int withCompressed(Operation operation) {
    return with(hiddenStreams().compressed, operation);
}

void createDirectoryOf(const char *path) {
    char directory[260] = {};
    slGetPathAndName(path, directory, nullptr);
    slCreateDirRecursively(directory);
}

template <class Stream>
int open(std::unique_ptr<Stream> &stream, const char *path, const char *mode) {
    if (path == nullptr || mode == nullptr) {
        return 0;
    }
    return caught([&] {
        if (std::strchr(mode, 'w') != nullptr) {
            createDirectoryOf(path);
        }
        stream.reset(); // closes the file before, which may be the very one that is opened
        stream = std::make_unique<Stream>();
        stream->OpenM(path, mode);
        return 1;
    });
}

// The length is looked at before anything is stored: InputSM would take a string of any length.
int inputString(TqCompressIOCL &stream, char *buffer, int size) {
    stream.EofM(); // passes to the next block, whose first value the string then is
    const int start = stream.TellM();
    int length = 0;
    stream.InputDM(&length);
    if (length < 0 || length > size) {
        stream.SeekM(start, SEEK_SET);
        return 0;
    }
    if (length > 0) {
        stream.InputSM(buffer, length, 0);
    }
    std::fill(buffer + length, buffer + size, ' ');
    return 1;
}

} // namespace

// The compressed data file.

int TRUNNION_BASIC_CALL OpenFileVB(const char *path, char *mode) {
    return open(hiddenStreams().compressed, path, mode);
}

int TRUNNION_BASIC_CALL GetVersionNumVB(int *version) {
    if (version == nullptr) {
        return 0;
    }
    return withCompressed([&](TqCompressIOCL &stream) { stream.GetVersionNumM(version); });
}

int TRUNNION_BASIC_CALL SetVersionNumVB(int version) {
    return withCompressed([&](TqCompressIOCL &stream) { stream.SetVersionNumM(version); });
}

int TRUNNION_BASIC_CALL OutputSVB(const char *text, int length) {
    return withCompressed([&](TqCompressIOCL &stream) {
        if (text == nullptr) {
            stream.OutputSM("", 0, 1);
        } else {
            stream.OutputSM(text, length != -1 ? length : static_cast<int>(std::strlen(text)), 1);
        }
    });
}

int TRUNNION_BASIC_CALL InputSVB(char *buffer, int size) {
    const auto &stream = hiddenStreams().compressed;
    if (stream == nullptr || buffer == nullptr) {
        return 0;
    }
    return caught([&] { return inputString(*stream, buffer, size); });
}

int TRUNNION_BASIC_CALL OutputDVB(int value) {
    return withCompressed([&](TqCompressIOCL &stream) { stream.OutputDM(&value); });
}

int TRUNNION_BASIC_CALL InputDVB(int *value) {
    if (value == nullptr) {
        return 0;
    }
    return caught(
        [&] { return withCompressed([&](TqCompressIOCL &stream) { stream.InputDM(value); }); });
}

int TRUNNION_BASIC_CALL OutputShortDVB(short value) {
    return OutputDVB(value);
}

int TRUNNION_BASIC_CALL InputShortDVB(short *value) {
    int wide = 0;
    const int result = value != nullptr ? InputDVB(&wide) : 0;
    if (result == 1) {
        *value = static_cast<short>(wide);
    }
    return result;
}

int TRUNNION_BASIC_CALL OutputFloatVB(float value) {
    return withCompressed([&](TqCompressIOCL &stream) { stream.OutputRM(&value); });
}

int TRUNNION_BASIC_CALL InputFloatVB(float *value) {
    if (value == nullptr) {
        return 0;
    }
    return withCompressed([&](TqCompressIOCL &stream) { stream.InputRM(value); });
}

int TRUNNION_BASIC_CALL FinishSaveVB() {
    return caught(
        [] { return withCompressed([](TqCompressIOCL &stream) { stream.FinishSaveM(1); }); });
}

int TRUNNION_BASIC_CALL CloseFileVB() {
    return withCompressed([](TqCompressIOCL &stream) { stream.CloseM(); });
}

// The text file.

int TRUNNION_BASIC_CALL OpenFileTxtVB(const char *path, char *mode) {
    return open(hiddenStreams().text, path, mode);
}

int TRUNNION_BASIC_CALL OutputSTxtVB(const char *text) {
    return with(hiddenStreams().text,
                [&](TqIOCL &stream) { stream.OutputSM(text != nullptr ? text : "", -1, 1); });
}

int TRUNNION_BASIC_CALL CloseFileTxtVB() {
    return with(hiddenStreams().text, [](TqIOCL &stream) { stream.CloseM(); });
}

// Directories.

int TRUNNION_BASIC_CALL slRemoveDirRecursivelyVB(const char *path) {
    return slRemoveDirRecursively(path);
}

int TRUNNION_BASIC_CALL slCreateDirRecursivelyVB(const char *path) {
    return slCreateDirRecursively(path);
}
