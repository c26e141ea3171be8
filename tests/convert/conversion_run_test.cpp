#include "tests/convert/convert_fixture.h"

namespace quenlox {
namespace {

using Outcome = ConversionRun::Outcome;

TEST_F(ConvertTest, TheEncoderIsAskedInItsOrderOnAThreadOfItsOwnAndWithoutVbrUnlessChosen) {
    const struct {
        EncoderSettings settings;
        Notes expected;
    } cases[] = {{{}, {"1 C:\\a.wav", "2 C:\\b.mp3", "6 44100", "3 2", "4 128"}},
                 {{8000, 320, 0}, {"1 C:\\a.wav", "2 C:\\b.mp3", "6 8000", "3 2", "18 0", "4 64"}}};
    for (const auto& c : cases) {
        gogo->configuration.clear();
        gogo->calls.clear();
        gogo->threads.clear();
        run.setSettings(c.settings);
        choose(Operation::Encode, {"C:\\a.wav"}, "C:\\b.mp3");
        encode();
        EXPECT_EQ(gogo->configuration, c.expected);
        EXPECT_EQ(gogo->calls, (Notes{"initialise", "detect", "frame", "frame", "frame", "close", "end"}));
        EXPECT_EQ(gogo->threads.size(), 1u);
        EXPECT_FALSE(gogo->threads.contains(std::this_thread::get_id()));
        EXPECT_EQ(notes, (Notes{"stop", "let go of C:\\b.mp3", "status 7", "made C:\\b.mp3", "status 0", "refresh"}));
        EXPECT_EQ(run.outcome(), Outcome::Made);
        EXPECT_FALSE(polling);
    }
}

TEST_F(ConvertTest, AFileThatFailsLeavesTheOthersGoingAndIsToldOfAtTheEnd) {
    const struct {
        LibraryError initialise, detect;
        int failingFrame;
        ConversionError error;
    } cases[] = {{LibraryError::NotInitialised, {}, 0, ConversionError::GogoStart},
                 {{}, LibraryError::NotFound, 0, ConversionError::GogoFile},
                 {{}, {}, 3, ConversionError::GogoEncode}};
    run.onFailed = [this] { notes.push_back(MessageOf(run.error())); };
    gogo->failingRun = 2;
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.error));
        gogo->initialiseError = c.initialise;
        gogo->detectError = c.detect;
        gogo->failingFrame = c.failingFrame;
        choose(Operation::Encode, {"C:\\a.wav", "C:\\b.wav", "C:\\c.wav"});
        encode();
        EXPECT_EQ(gogo->calls.back(), "end");
        EXPECT_EQ(Notes(notes.end() - 5, notes.end()),
                  (Notes{"stop", "status 3", "failed", "refresh", MessageOf(c.error)}));
        EXPECT_TRUE(run.reason().starts_with("b.wav: ")) << run.reason();
        ASSERT_EQ(run.jobs().size(), 1u);
        EXPECT_EQ(run.jobs().front().source, "C:\\b.wav");
        EXPECT_TRUE(run.canStart());
        EXPECT_FALSE(polling);
        gogo->failingRun += 3;
    }
}

TEST_F(ConvertTest, AnEncodeThatIsGivenUpComesBackFromItsFrameBeforeAnotherRunMayStart) {
    const struct {
        bool played;  // something else is, which goes on; else it is cancelled
        int frame;    // of four
        const char *destination, *made;
        bool stays;
    } cases[] = {{false, 2, "C:\\b.mp3", "", false},
                 {true, 2, "C:\\b.mp3", "", false},
                 {false, 4, "C:\\b.mp3", "C:\\b.mp3", true},
                 {false, 4, "C:\\b.rmp", "C:\\b.rmp.mp3", false}};
    gogo->frames = 4;
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.played << c.frame << " " << c.destination);
        choose(Operation::Encode, {"C:\\a.wav"}, c.destination);
        startHeld(c.frame);
        EXPECT_TRUE(polling);
        run.poll();
        EXPECT_EQ(notes, (Notes{"stop", std::string("let go of ") + c.destination, "status 7"}));
        EXPECT_EQ(run.progress().permille, 250) << "after the first frame";
        if (*c.made) files.add(c.made);
        notes.clear();
        if (c.played) state.PlayerStatus = kPlay;
        c.played ? run.poll() : run.cancel();
        run.start();
        EXPECT_FALSE(run.running() || run.canStart() || polling);
        EXPECT_EQ(run.outcome(), c.played ? Outcome::None : Outcome::Cancelled);
        EXPECT_EQ(notes, c.played ? Notes() : (Notes{"status 0", "stop", "status 0"}));
        awaitEncoder();
        EXPECT_EQ(gogo->calls.back(), "end");
        EXPECT_EQ(files.fileExists(c.made), c.stays);
    }
}

TEST_F(ConvertTest, AWindowThatDoesNothingIsSentOneTaskAndNotOneForEachFrame) {
    gogo->frames = 1000;
    choose(Operation::Encode, {"C:\\a.wav"});
    startHeld(900);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));  // another report is due
    gogo->letGo();
    ASSERT_TRUE(gogo->awaitEnd());
    EXPECT_EQ(windows.waiting(), 1u);
    awaitRun();
}

TEST_F(ConvertTest, TheEndOfTheProgramWaitsForAnEncoderThatComesBackAndLeavesAnotherBehind) {
    gogo->frames = 1000000;
    choose(Operation::Encode, {"C:\\a.wav"});
    run.start();
    run.abandon(std::chrono::seconds(10));
    EXPECT_EQ(gogo->calls.back(), "end");
    EXPECT_EQ(state.PlayerStatus, kStop);
    startHeld(2);
    run.abandon(std::chrono::milliseconds(1));
    EXPECT_FALSE(run.running());
    while (windows.waiting() > 0) windows.runNext();
    gogo->letGo();
    ASSERT_TRUE(gogo->awaitEnd());
    EXPECT_EQ(windows.waiting(), 0u) << "nobody listens to it any more";
}

TEST_F(ConvertTest, TheTextsOfTheSourceGoIntoTheNewFile) {
    vbmp3.addFile("C:\\a.wav", kWaveFile, 60, "題名", "歌手");
    vbmp3.addFile("C:\\none.wav", kWaveFile, 60);
    choose(Operation::Encode, {"C:\\a.wav", "C:\\none.wav"});
    encode();
    EXPECT_EQ((vbmp3.tags[{"C:\\a.mp3", kTagId3v2}].title), "題名");
    EXPECT_EQ((vbmp3.tags[{"C:\\a.mp3", kTagId3v1}].artist), "歌手");
    EXPECT_EQ(vbmp3.tags.size(), 2u) << "where there are no texts there is no tag";
    // An RMP is made of an MP3 that does not stay, under a name that nobody has.
    files.add("C:\\b.rmp.mp3", "of the user");
    choose(Operation::Encode, {"C:\\a.wav"}, "C:\\b.rmp");
    startHeld(1);
    files.add("C:\\b.rmp.mp3.mp3");
    gogo->letGo();
    awaitRun();
    EXPECT_EQ(vbmp3.count("toRmp C:\\b.rmp.mp3.mp3 > C:\\b.rmp"), 1);
    EXPECT_EQ((vbmp3.tags[{"C:\\b.rmp", kTagSi}].title), "題名");
    EXPECT_FALSE(files.fileExists("C:\\b.rmp.mp3.mp3"));
    EXPECT_EQ(files.bytesOf("C:\\b.rmp.mp3"), "of the user");
}

// Several decodes that go on until the test ends them, each on its thread.
TEST_F(ConvertTest, FilesGoOnSideBySideAndEachCanBeGivenUp) {
    std::mutex mutex;
    std::map<std::string, LibraryError> ended;  // those that the test lets go
    std::set<std::string> begun;
    vbmp3.decoding = [&](const std::string& file, const std::function<bool(double)>& progress) {
        for (;; std::this_thread::yield()) {
            if (!progress(0.5)) return LibraryError::Other;
            const std::lock_guard lock(mutex);
            begun.insert(file);
            if (ended.contains(file)) return ended[file];
        }
    };
    const auto waitFor = [&](const std::set<std::string>& expected) {
        for (;; windows.runNext()) {
            const std::lock_guard lock(mutex);
            if (begun == expected) return;
        }
    };
    using enum ConversionRun::State;
    const auto waitForStates = [&](const std::vector<ConversionRun::State>& expected) {
        std::vector<ConversionRun::State> states;
        do {
            if (!states.empty()) windows.runNext();
            states.clear();
            for (const auto& file : side.files()) states.push_back(file.state);
        } while (states != expected);
    };
    const auto end = [&](const std::string& file, LibraryError error = LibraryError::None) {
        const std::lock_guard lock(mutex);
        ended[file] = error;
    };
    side.setSources({"a.mp3", "b.mp3", "c.mp3", "d.mp3", "e.mp3"});
    side.start();
    waitFor({"a.mp3", "b.mp3"});  // as many as there are cores
    waitForStates({Running, Running, Waiting, Waiting, Waiting});
    side.cancelFile(3);
    side.cancelFile(0);
    waitForStates({Cancelled, Running, Running, Cancelled, Waiting});
    EXPECT_EQ(state.PlayerStatus, kDecode);
    end("b.mp3", LibraryError::Write);
    waitForStates({Cancelled, Failed, Running, Cancelled, Running});
    EXPECT_EQ(side.progress().done, 3u);
    end("c.mp3");
    end("e.mp3");
    waitForStates({Cancelled, Failed, Made, Cancelled, Made});
    EXPECT_EQ(side.outcome(), Outcome::Failed);
    EXPECT_EQ(side.reason(), "b.mp3: 保存先に書き込めません");
    // The three that are not there start again; all are given up at once.
    ended.clear();
    side.start();
    waitForStates({Running, Running, Waiting});
    side.cancel();
    EXPECT_FALSE(side.running() || side.canStart()) << "they have not come back yet";
    while (!side.canStart()) windows.runNext();
    EXPECT_EQ(side.outcome(), Outcome::Cancelled);
}

// Jobs of the decoding library.

TEST_F(ConvertTest, AJobRunsInTheBackgroundUntilTheTimerFindsItDone) {
    vbmp3.addFile("C:\\a.mp3");
    const struct {
        ConversionRun& run;
        Operation operation;
        const char *source, *call, *made;
        int status;
    } cases[] = {{run, Operation::Decode, "C:\\a.mp3", "decode C:\\a.mp3 > C:\\a.wav", "made C:\\a.wav", kDecode},
                 {withoutGogo(), Operation::Encode, "C:\\a.wav", "encodeStart C:\\a.mp3", "made C:\\a.mp3", kEncode}};
    for (const auto& c : cases) {
        c.run.setOperation(c.operation);
        c.run.setSources({c.source});
        c.run.start();
        EXPECT_EQ(vbmp3.count(c.call), 1);
        EXPECT_EQ(state.PlayerStatus, c.status);
        EXPECT_TRUE(polling);
        EXPECT_TRUE(c.run.decodesUnheard());
        vbmp3.job = {JobReport::State::Running, 420};
        c.run.poll();
        EXPECT_EQ(c.run.progress().permille, 420);
        vbmp3.job.state = JobReport::State::Done;
        c.run.poll();
        EXPECT_EQ(Notes(notes.end() - 3, notes.end()), (Notes{c.made, "status 0", "refresh"}));
        EXPECT_FALSE(polling);
    }
}

TEST_F(ConvertTest, WhilePlayingTheRunEndsWithTheSound) {
    vbmp3.addFile("C:\\a.mp3");
    vbmp3.addFile("C:\\b.rmp", kRmpFile);
    choose(Operation::PlayDecode, {"C:\\a.mp3", "C:\\b.rmp"});
    whileOpening = [this] { run.cancel(); };
    run.start();
    whileOpening = [this] { state.PlayerStatus = kPlay; };
    run.start();
    EXPECT_FALSE(run.running());
    EXPECT_TRUE(vbmp3.calls == Notes{"encodeStop"}) << "nothing is begun";
    state.PlayerStatus = kStop;
    whileOpening = [] {};
    run.start();
    EXPECT_EQ(vbmp3.calls.back(), "playDecode C:\\a.mp3 > C:\\a.wav");
    EXPECT_FALSE(run.decodesUnheard());
    vbmp3.job.state = JobReport::State::Done;
    run.poll();  // everything is decoded, not everything heard
    EXPECT_EQ(vbmp3.calls.back(), "playDecode C:\\a.mp3 > C:\\a.wav");
    state.PlayerStatus = kStop;  // as the end of a track leaves it
    run.decodeEnded();
    EXPECT_EQ(vbmp3.calls.back(), "playDecode C:\\b.rmp > C:\\b.wav");
    EXPECT_EQ(state.PlayerStatus, kDecode);
    run.decodeEnded();
    EXPECT_EQ(Notes(notes.end() - 3, notes.end()), (Notes{"made C:\\b.wav", "status 0", "refresh"}));
}

TEST_F(ConvertTest, AJobThatFailsSaysWhy) {
    ConversionRun& bare = withoutGogo();
    vbmp3.addFile("C:\\a.mp3");
    vbmp3.addFile("C:\\w.mp3", kWaveFile);
    const struct {
        Operation operation;
        const char* source;
        LibraryError reason;
        ConversionError error;
        bool onTheWay;  // it starts
    } cases[] = {{Operation::Decode, "C:\\none.mp3", LibraryError::Write, ConversionError::DecodeSource, false},
                 {Operation::Decode, "C:\\w.mp3", LibraryError::None, ConversionError::DecodeSource, false},
                 {Operation::PlayDecode, "C:\\a.mp3", LibraryError::NotFound, ConversionError::DecodeSource, false},
                 {Operation::Encode, "C:\\s.wav", LibraryError::Format, ConversionError::EncodeSource, false},
                 {Operation::Encode, "C:\\s.wav", LibraryError::NoCodec, ConversionError::NoCodec, false},
                 {Operation::Decode, "C:\\a.mp3", LibraryError::Write, ConversionError::Other, true},
                 {Operation::PlayDecode, "C:\\a.mp3", LibraryError::Write, ConversionError::Other, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(c.operation) << " " << c.source << " " << TextOf(c.reason));
        vbmp3.error = c.reason;
        vbmp3.job = {JobReport::State::Failed, 0, c.reason};
        vbmp3.jobsWork = c.onTheWay;
        bare.setOperation(c.operation);
        bare.setSources({c.source});
        bare.start();
        bare.poll();
        EXPECT_EQ(bare.outcome(), Outcome::Failed);
        EXPECT_EQ(bare.error(), c.error);
        EXPECT_EQ(state.PlayerStatus, kError);
    }
    EXPECT_EQ(bare.reason(), "a.mp3: 保存先に書き込めません");
}

TEST_F(ConvertTest, WhatIsChosenStaysWhileARunGoesOn) {
    vbmp3.addFile("C:\\a.mp3");
    choose(Operation::Decode, {"C:\\a.mp3"});
    files.add("C:\\a.wav");
    EXPECT_EQ(run.replaced(), Notes{"C:\\a.wav"});
    run.start();
    run.setSources({});
    run.setDestination("C:\\other.wav");
    run.setOperation(Operation::Encode);
    EXPECT_EQ(run.jobs().front().destination, "C:\\a.wav");
    state.PlayerStatus = kPlay;  // ends it
    run.poll();
    EXPECT_EQ(vbmp3.calls.back(), "encodeStop");
    run.setDestination("C:\\a.wav");  // the save dialog asks by itself
    EXPECT_TRUE(run.replaced().empty());
    run.setOperation(Operation::PlayDecode);
    EXPECT_TRUE(run.canStart());
    run.setOperation(Operation::Encode);  // what was to be decoded cannot be encoded
    EXPECT_FALSE(run.canStart());
}

}  // namespace
}  // namespace quenlox
