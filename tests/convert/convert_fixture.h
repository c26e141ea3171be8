// A converter window over the fakes, with hooks that note what they were asked.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/global_state.h"
#include "convert/form_conv.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_gogo.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"

namespace quenlox {

class ConvertTest : public testing::Test {
  protected:
    ConvertTest() {
        FormConv::Hooks hooks;
        hooks.stopPlayback = [this] { notes.push_back("stop"); };
        hooks.letGo = [this](const std::string& path) { notes.push_back("let go of " + path); };
        hooks.showStatus = [this] { notes.push_back("status " + std::to_string(state.PlayerStatus)); };
        hooks.refreshBrowserFiles = [this] { notes.push_back("refresh"); };
        hooks.openFile = [this] { notes.push_back("open " + state.CurrentFile); };
        hooks.setPolling = [this](bool on) { polling = on; };
        form.connect(hooks);
    }
    // Chooses operation, sources and, when given, the destination, as the user does.
    void choose(int option, std::vector<std::string> sources, const std::string& destination = {}) {
        form.DecOption[option].setValue(true);
        for (const std::string& source : sources) files.add(source);
        dialogs.filesAnswers.push_back(std::move(sources));
        form.Command2.click();
        if (destination.empty()) return;
        dialogs.fileAnswers.push_back(destination);
        form.Command3.click();
    }
    // Items in the order in which they were configured.
    std::vector<int> items() const {
        std::vector<int> all;
        for (const auto& entry : gogo.configuration) all.push_back(std::get<0>(entry));
        return all;
    }
    int count(const std::string& call) const { return static_cast<int>(std::count(gogo.calls.begin(), gogo.calls.end(), call)); }
    bool noted(const std::string& what) const { return std::find(notes.begin(), notes.end(), what) != notes.end(); }
    void expectIdle() {
        EXPECT_FALSE(form.running());
        EXPECT_FALSE(polling);
        EXPECT_EQ(form.Command4.caption(), "変換開始");
        EXPECT_TRUE(form.DecOption[0].enabled());
    }
    void expectMessage(const std::string& text) {
        ASSERT_EQ(dialogs.messages.size(), 1u);
        EXPECT_EQ(dialogs.messages[0].text, text);
        EXPECT_EQ(dialogs.messages[0].icon, MessageIcon::Stop);
        EXPECT_EQ(state.PlayerStatus, kError);
        EXPECT_EQ(state.CurrentFile, "");
        expectIdle();
    }

    GlobalState state;
    FakeVbmp3 vbmp3;
    FakeGogo gogo;
    FakeDialogs dialogs;
    FakeFileSystem files;
    FakeWindowSystem windows;
    std::vector<std::string> notes;
    bool polling = false;
    FormConv form{state, vbmp3, gogo, dialogs, files, windows};
};

}  // namespace quenlox
