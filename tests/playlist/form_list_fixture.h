// The play-list window over a list model on the fakes.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "playlist/form_list.h"
#include "state/option_store.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_manager.h"
#include "tests/fakes/fake_window_system.h"
#include "tests/playlist/lists_fixture.h"

namespace quenlox {

struct ListWindow : Lists {
    FakeDialogs dialogs;
    FakeWindowSystem windows;
    OptionStore chosen;
    FakeFileManager fileManager;
    FormList form{state, chosen, lists, files, dialogs, fileManager};
    // What was chosen for playing: path, list and row, intent, and whether it is opened, played or as before.
    std::vector<std::string> opened;
    OpenResult answer = OpenResult::Opened;

    explicit ListWindow(bool shown = true) {
        form.onOpen = [this](const Transport::Track& track, int intent, Transport::Start start) {
            const char* const starts[] = {"open", "play", "as before"};
            opened.push_back(track.path + " " + std::to_string(track.list) + "/" + std::to_string(track.row) + " " +
                             std::to_string(intent) + " " + starts[static_cast<int>(start)]);
            return answer;
        };
        form.realise(windows);
        if (shown) form.show();
    }
    // Ticks of the window's timer until nothing is left to do.
    void finishWork() {
        for (int tick = 0; tick < 100000 && form.Timer1.enabled(); ++tick) form.Timer1_Timer();
    }
    void addTitled(char letter, const std::string& title, int seconds = 60) {
        vbmp3.addFile(pathOf(letter), kMpegFile, seconds, title, "Artist", "Album");
        lists.AddEntry(pathOf(letter), 0);
    }
    ListView& view() { return form.PlayView[state.ListNo]; }
    void select(const std::string& marks) { view().setSelection(Marked(marks)); }
    std::string marks() { return MarksOf(view().selection()); }
    void browse(const std::string& folder, const Paths& names) {
        for (const std::string& name : names) files.add(JoinPath(folder, name), "");
        form.openFolder(folder);
    }
    static const MenuItem* find(const std::vector<MenuItem>& items, const std::string& caption) {
        for (const MenuItem& item : items) {
            if (item.caption.substr(0, item.caption.find('\t')) == caption) return &item;
            if (const MenuItem* found = find(item.items, caption)) return found;
        }
        return nullptr;
    }
    const MenuItem* menu(const std::string& caption) { return find(form.menuBar()->items, caption); }
};

struct ListWindowTest : testing::Test, ListWindow {};

}  // namespace quenlox
