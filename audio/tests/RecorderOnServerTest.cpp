// SPDX-License-Identifier: MIT
#include "audio/tests/RecorderOnServer.h"
#include "tests/support/ChildProgram.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <mutex>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t rate = 16000;
constexpr auto frame = 16ms;  // of a screen at 60 Hz

// The content of the file

enum class Speaker { flite, reader };

/// What somebody says, at 16 kHz.
Samples speech(Speaker speaker, const QString& scratchPath) {
    if (speaker == Speaker::reader)
        return readSound(
            QStringLiteral("/usr/share/pocketsphinx/test/data/librivox/"
                           "sense_and_sensibility_01_austen_64kb-0870.wav"));
    speak(QStringLiteral("a dog ran to the river"), scratchPath);
    return readSound(scratchPath);
}

struct Room {
    const char* name;
    RoomFormat format;
    double likeness;  ///< at least; the way through other rates shifts by parts of a sample
};

class ARecordingIn : public RecorderOnServer,
                     public testing::WithParamInterface<std::tuple<Room, Speaker>> {
protected:
    ARecordingIn() : RecorderOnServer(std::get<Room>(GetParam()).format) {}
};

TEST_P(ARecordingIn, isWhatWasSaid) {
    const Samples said = speech(std::get<Speaker>(GetParam()), file(QStringLiteral("voice.wav")));
    ASSERT_GT(said.size(), rate);
    recorder.start();
    server.play(soundFile(said));
    const Match match = find(said, stopAndRead());
    EXPECT_EQ(match.heard, said.size());
    EXPECT_GE(match.likeness, std::get<Room>(GetParam()).likeness);
    const bool isBitExact = std::get<Room>(GetParam()).format.sampleRate == rate;
    EXPECT_GE(match.equal, isBitExact ? said.size() : 0);
}

INSTANTIATE_TEST_SUITE_P(
    TheRecorder, ARecordingIn,
    testing::Combine(
        testing::Values(Room{"16kHz", {}, 1},
                        Room{"48kHzStereo", {.sampleRate = 48000, .channels = 2}, 0.98},
                        Room{"44kHzStereo", {.sampleRate = 44100, .channels = 2}, 0.98},
                        Room{"44kHzFloat",
                             {.sampleRate = 44100, .sampleFormat = QStringLiteral("float32le")},
                             0.98}),
        testing::Values(Speaker::flite, Speaker::reader)),
    [](const auto& row) {
        return std::string(std::get<Room>(row.param).name) +
               (std::get<Speaker>(row.param) == Speaker::flite ? "Flite" : "Reader");
    });

class TheRecorderOnAServer : public RecorderOnServer {
protected:
    [[nodiscard]] QString soxi(const char* option, const QString& path) const {
        return QString::fromUtf8(run(QStringLiteral("soxi"), {QString::fromLatin1(option), path}))
            .trimmed();
    }
};

TEST_F(TheRecorderOnAServer, writesWhatTheSpeechHelperTakes) {
    record(500ms);
    const QString path = recorder.stop()->waitUntilFinished();
    EXPECT_EQ(soxi("-t", path), QStringLiteral("wav"));
    EXPECT_EQ(soxi("-r", path), QStringLiteral("16000"));
    EXPECT_EQ(soxi("-c", path), QStringLiteral("1"));
    EXPECT_EQ(soxi("-b", path), QStringLiteral("16"));
    EXPECT_EQ(soxi("-e", path), QStringLiteral("Signed Integer PCM"));
    EXPECT_EQ(soxi("-s", path).toLongLong() * 2 + 44, QFile(path).size());
}

TEST_F(TheRecorderOnAServer, saysInTheLogWhatItRecords) {
    record(100ms);
    static_cast<void>(recorder.stop());
    EXPECT_EQ(home.log(), QStringLiteral("recording @ 16000Hz (built-in mic: true)\n"));
}

TEST_F(TheRecorderOnAServer, makesAQuietVoiceSixTimesLouder) {
    const Samples said = noise(rate, 1000);
    recorder.boost = true;
    recorder.start();
    server.play(soundFile(said));
    const Samples heard = stopAndRead();
    const Match match = find(said, heard);
    ASSERT_EQ(match.heard, said.size());
    // The second half: by then every buffer is full of noise.
    const auto place = static_cast<std::size_t>(match.offset);
    const auto sound = std::span(said).subspan(rate / 2);
    for (std::size_t i = 0; i < sound.size(); ++i)
        ASSERT_NEAR(heard[place + rate / 2 + i], 6 * sound[i], 1) << "at sample " << i;
}

TEST_F(TheRecorderOnAServer, showsTheLevelWhileSomebodySpeaks) {
    const QString path = soundFile(noise(3 * rate));
    recorder.start();
    const ChildProgram speaker = server.startPlaying(path);
    EXPECT_TRUE(waitUntil([this] { return recorder.level() > 0.6; }, 3s));
    static_cast<void>(recorder.stop());
    EXPECT_EQ(recorder.level(), 0);
}

// Continuity

int longRecordingSeconds() {
    const int asked = qEnvironmentVariableIntValue("SAYLOFT_LONG_RECORDING_S");
    return asked > 0 ? asked : 20;
}

// Unlike every other test, in real time: SAYLOFT_LONG_RECORDING_S says how long.
TEST_F(TheRecorderOnAServer, losesNoSampleOfALongRecording) {
    const auto seconds = static_cast<std::size_t>(longRecordingSeconds());
    const Samples said = noise(seconds * rate);
    const QString path = soundFile(said);
    recorder.start();
    ChildProgram speaker = server.startPlaying(path);
    ASSERT_TRUE(speaker.waitForEnd(std::chrono::seconds(seconds + 30)));
    ASSERT_EQ(speaker.exitCode(), 0);
    const Samples heard = stopAndRead();

    const Match beginning = find(std::span(said).first(rate), std::span(heard).first(5 * rate));
    ASSERT_GE(beginning.offset, 0);
    const auto place = static_cast<std::size_t>(beginning.offset);
    ASSERT_GE(heard.size(), place + said.size());
    const auto [differs, other] =
        std::mismatch(said.begin(), said.end(), heard.begin() + beginning.offset);
    EXPECT_EQ(differs - said.begin(), std::ssize(said)) << "is the first sample that differs";
}

// Beginning and end

TEST_F(TheRecorderOnAServer, hearsTheFirstSampleSoonAfterTheStart) {
    input.framesPerBuffer = 16;
    std::vector<double> waits;
    for (int hold = 0; hold < 20; ++hold) {
        const auto begin = Clock::now();
        recorder.start();
        ASSERT_TRUE(waitUntil([this] { return input.firstSample().has_value(); }));
        waits.push_back(
            std::chrono::duration<double, std::milli>(*input.firstSample() - begin).count());
        static_cast<void>(recorder.stop());
    }
    std::ranges::sort(waits);
    RecordProperty("shortest_ms", std::to_string(waits.front()));
    RecordProperty("median_ms", std::to_string(waits[10]));
    RecordProperty("longest_ms", std::to_string(waits.back()));
    EXPECT_LT(waits[10], 150);
}

TEST_F(TheRecorderOnAServer, keepsTheMainThreadForLessThanAFrame) {
    std::vector<std::chrono::microseconds> starts;
    std::vector<std::chrono::microseconds> stops;
    for (int hold = 0; hold < 20; ++hold) {
        starts.push_back(duration([this] { recorder.start(); }));
        turnEventLoopFor(50ms);
        stops.push_back(duration([this] { static_cast<void>(recorder.stop()); }));
    }
    std::ranges::sort(starts);
    std::ranges::sort(stops);
    RecordProperty("median_start_us", std::to_string(starts[10].count()));
    RecordProperty("median_stop_us", std::to_string(stops[10].count()));
    RecordProperty("longest_start_us", std::to_string(starts.back().count()));
    RecordProperty("longest_stop_us", std::to_string(stops.back().count()));
    EXPECT_LT(starts[10], frame);
    EXPECT_LT(stops[10], frame);
    EXPECT_LT(stops.back(), 2 * frame);
}

/// Keeps what a second capture hears, up to a moment.
struct Witness {
    std::mutex mutex;
    Samples heard;
    std::atomic<std::chrono::steady_clock::duration> until =
        std::chrono::steady_clock::duration::max();

    AudioCaptureRequest request(std::optional<AudioDeviceId> device) {
        AudioCaptureRequest request;
        request.device = device;
        request.framesPerBuffer = 16;
        request.onBuffer = [this](const AudioBuffer& buffer) {
            const std::lock_guard lock(mutex);
            if (std::chrono::steady_clock::now().time_since_epoch() > until.load())
                return;
            for (int i = 0; i < buffer.frames; ++i)
                heard.push_back(WavFile::toPcm16(buffer.samples[i]));
        };
        request.onEnd = [](const QString&) {};
        return request;
    }
};

// A sound takes up to 40 ms to us: what a witness hears in the 40 ms after the stop was spoken
// before it, down to the last millisecond.
TEST_F(TheRecorderOnAServer, keepsWhatIsSaidInTheLastMillisecondsBeforeTheStop) {
    const Samples said = noise(5 * rate);
    Witness witness;
    const auto capture =
        input.startCapture(witness.request(InputDevices(input).deviceIDForUID(builtin))).capture;
    const QString path = soundFile(said);
    recorder.start();
    const ChildProgram speaker = server.startPlaying(path);
    ASSERT_TRUE(waitUntil([this] { return recorder.level() > 0.6; }, 3s));
    const std::shared_ptr<Recording> recording = recorder.stop();
    witness.until = (Clock::now() + 40ms).time_since_epoch();
    const Samples kept = readSound(recording->waitUntilFinished());
    const std::lock_guard lock(witness.mutex);
    ASSERT_GT(witness.heard.size(), rate / 10);
    const auto last = std::span(witness.heard).last(rate / 20);
    EXPECT_EQ(find(last, kept).equal, last.size());
}

TEST_F(TheRecorderOnAServer, keepsAClickInTheLastMoment) {
    Samples silenceAndClick(rate);
    silenceAndClick.back() = 32000;
    silenceAndClick.resize(3 * rate);
    Witness witness;
    const auto capture =
        input.startCapture(witness.request(InputDevices(input).deviceIDForUID(builtin))).capture;
    const auto clicks = [&witness] {
        const std::lock_guard lock(witness.mutex);
        return !witness.heard.empty() && std::ranges::max(witness.heard) == 32000;
    };
    const QString path = soundFile(silenceAndClick);
    recorder.start();
    const ChildProgram speaker = server.startPlaying(path);
    while (!clicks())
        turnEventLoopFor(1ms);
    EXPECT_EQ(std::ranges::count(stopAndRead(), 32000), 1);
}

TEST_F(TheRecorderOnAServer, losesNothingBetweenTwoHoldsBackToBack) {
    const Samples said = noise(5 * rate);
    const QString path = soundFile(said);
    record(100ms);
    const ChildProgram speaker = server.startPlaying(path);
    ASSERT_TRUE(waitUntil([this] { return recorder.level() > 0.6; }, 3s));
    const std::shared_ptr<Recording> first = recorder.stop();
    record(1000ms);
    const std::shared_ptr<Recording> second = recorder.stop();
    const Samples one = readSound(first->waitUntilFinished());
    const Samples two = readSound(second->waitUntilFinished());

    const Match endOfOne = find(std::span(one).last(rate / 20), said);
    const Match beginOfTwo = find(std::span(two).first(rate / 20), said);
    ASSERT_EQ(endOfOne.equal, rate / 20);
    ASSERT_EQ(beginOfTwo.equal, rate / 20);
    EXPECT_LE(beginOfTwo.offset, endOfOne.offset + static_cast<std::ptrdiff_t>(rate / 20));
    EXPECT_EQ(find(two, said).equal, two.size());
}

}  // namespace
}  // namespace sayloft::test
