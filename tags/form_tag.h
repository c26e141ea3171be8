// The tag editor: shows and edits the tags of one file in three views, ID3 (versions 1 and 2, and APE where there is
// one), SI (the fields of RMP files) and INFO (those of WAVE files), proposes a file name by the standard format,
// renames, wraps and unwraps. A list beside it holds many files, which are changed alike one after another, on another
// thread; until the window is closed what was written can be taken back.
// While it shows the current file it follows that, unless there are edits that are not saved. On the user-interface
// thread.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/form.h"
#include "forms/list_view.h"
#include "platform/vbmp3.h"
#include "tags/rename.h"
#include "tags/tag_change.h"

namespace quenlox {

class Dialogs;
class FileSystem;
class OptionStore;
class WindowSystem;
struct GlobalState;

class FormTag : public Form {
  public:
    static constexpr int kId3View = 0, kSiView = 1, kInfoView = 2;
    static constexpr int kId3Kinds = kTagId3v1 | kTagId3v2;
    enum Field { Title, Artist, Album, Genre, Year, Track, Comment };
    static constexpr int kFields = 7;

    FormTag(GlobalState& state, OptionStore& options, Vbmp3& vbmp3, FileSystem& files, Dialogs& dialogs);

    struct Hooks {
        Transport* transport = nullptr;
        RenameFollowers followers;
        std::function<void(const std::string& path)> tagWritten;  // what lists show of it is out of date
        std::function<std::vector<std::string>()> selectedPaths;  // rows of the play list, in their order
        WindowSystem* windows = nullptr;
    };
    void connect(Hooks hooks) { hooks_ = std::move(hooks); }

    ListView FileView{*this, "FileView"};     // the files that are changed alike
    CommandButton cmdTake{*this, "cmdTake"};  // takes the selected rows of the play list
    Label LabelFile{*this, "LabelFile"};
    TabStrip TabView{*this, "TabView", {"&ID3タグ", "SI (RM&P)", "INF&O (WAVE)"}};
    std::array<Label, kFields> LabelField{Label{*this, "LabelField", 0}, Label{*this, "LabelField", 1},
                                          Label{*this, "LabelField", 2}, Label{*this, "LabelField", 3},
                                          Label{*this, "LabelField", 4}, Label{*this, "LabelField", 5},
                                          Label{*this, "LabelField", 6}};
    TextBox TextTitle{*this, "TextTitle"};
    TextBox TextArtist{*this, "TextArtist"};
    TextBox TextAlbum{*this, "TextAlbum"};
    ComboBox ComboGenre{*this, "ComboGenre", true};
    TextBox TextYear{*this, "TextYear"};
    TextBox TextTrack{*this, "TextTrack"};
    TextBox TextComment{*this, "TextComment"};
    CheckBox CheckV2{*this, "CheckV2"};  // saving writes ID3v2; without the tick it takes the tag away
    CheckBox CheckV1{*this, "CheckV1"};
    CheckBox CheckApe{*this, "CheckApe"};   // saving keeps APE as it is; without the tick it takes the tag away
    Label LabelLimit{*this, "LabelLimit"};  // what the chosen tags cannot hold
    CommandButton cmdSave{*this, "cmdSave"};
    CommandButton cmdRevert{*this, "cmdRevert"};
    CommandButton cmdConvert{*this, "cmdConvert"};  // MP3 to RMP and back
    TextBox TextFileName{*this, "TextFileName"};
    CommandButton cmdRename{*this, "cmdRename"};
    Frame FrameName{*this, "FrameName"};
    CommandButton cmdPrevious{*this, "cmdPrevious"};  // in the list
    CommandButton cmdNext{*this, "cmdNext"};
    CommandButton cmdCurrent{*this, "cmdCurrent"};  // back to the file that is playing
    Label LabelPlace{*this, "LabelPlace"};
    Label LabelApply{*this, "LabelApply"};
    ComboBox ComboField{*this, "ComboField"};
    Label LabelAction{*this, "LabelAction"};
    ComboBox ComboAction{*this, "ComboAction"};  // by TagAction
    Label LabelWith{*this, "LabelWith"};
    ComboBox ComboWith{*this, "ComboWith", true};  // the other field, the first number or the format
    CommandButton cmdApply{*this, "cmdApply"};     // does it with all of them; stops that
    CommandButton cmdUndo{*this, "cmdUndo"};       // takes back what was written last
    ProgressBar Progress{*this, "Progress"};
    Frame FrameSelected{*this, "FrameSelected"};
    Label LabelState{*this, "LabelState"};
    CommandButton cmdClose{*this, "cmdClose"};

    // The genres of the library, for the choice.
    void fillGenres();
    // Shows CurrentFile, when there is nothing unsaved or the user lets go of it.
    void fill();
    bool edit(const std::string& path);  // the same for any file; false: the user stays with what is unsaved
    // CurrentFile is open now: shown when the window is and nothing is unsaved.
    void currentFileOpened();
    // The format of file names is another one: proposes by it.
    void formatChanged();
    // Before the program ends: unsaved edits are saved when the user wants them to be.
    void offerToSave();

    const std::string& file() const { return file_; }
    bool edited() const { return edited_; }
    bool save();

    void TabView_Click();
    void cmdRename_Click();
    void cmdConvert_Click();
    void cmdApply_Click();
    void cmdUndo_Click();
    void ComboAction_Click();
    void FileView_SelectionChange();
    void step(int by);
    void takeSelected();

    Layout layout() override;
    void Form_Shown() override;
    void Form_FilesDropped(const std::vector<std::string>& files, Point at) override;
    // Closed by the user it is only hidden: its place is saved at the end of the program.
    void Form_Unload(bool& cancel) override;

  private:
    // Which text of a tag a field shows.
    static std::string TrackTexts::*TextOfField(int field);

    // form_tag.cpp
    void makeControls();
    void showFile(const std::string& path);
    void showView();
    bool isWave() const;
    std::string whyNotEditable() const;
    void proposeName();
    void fieldEdited();
    std::string tooLongFields() const;
    void showLimits();
    void showButtons();
    void say(const std::string& text) { LabelState.setCaption(text); }
    bool mayLeave();
    std::string text(Field field) const;
    void setText(Field field, const std::string& text);

    // form_tag_write.cpp
    TrackTexts fieldsShown() const;
    LibraryError writeFile(const std::string& path, const std::function<LibraryError()>& write);
    std::string lossOf(int remove, bool all) const;
    bool takesSideFiles(const std::vector<std::string>& found);
    void showAgain(Field field);
    void tell(const std::string& what, LibraryError error);
    void renamedInList(const std::string& from, const std::string& to);

    // form_tag_many.cpp
    void makeMany();
    void setFiles(std::vector<std::string> paths);
    void showPlace();
    TagChange chosenChange() const;
    std::string questionOf(const TagChange& change) const;
    struct Outcome {
        std::size_t done = 0, failed = 0, passed = 0;
        LibraryError firstError = LibraryError::None;
    };
    using Work = std::function<LibraryError(Vbmp3&, std::size_t index, std::optional<TagsBefore>& before)>;
    Outcome workThrough(const std::vector<std::string>& paths, const Work& work, std::vector<TagsBefore>& written);
    void tellOutcome(const Outcome& outcome, std::size_t count, const std::string& what);

    GlobalState& state_;
    OptionStore& options_;
    Vbmp3& vbmp3_;
    FileSystem& files_;
    Dialogs& dialogs_;
    Hooks hooks_;
    std::string file_;
    std::optional<FileType> fileType_;  // none: the library can do nothing with it
    int present_ = 0;                   // tags that the file carries
    int view_ = kId3View;               // what TabView shows
    bool editable_ = false;             // the shown view can be written
    bool edited_ = false;
    bool showing_ = false;  // fields change because a file is shown
    bool writing_ = false;
    bool follows_ = true;     // the current file is shown
    bool nameTyped_ = false;  // by the user, for the file that is shown
    bool working_ = false;    // through the list
    bool cancelled_ = false;
    std::vector<std::string> paths_;                // of the list
    std::vector<std::string> states_;               // what was done with them
    std::vector<std::vector<TagsBefore>> history_;  // what each writing has found, the last one last
};

}  // namespace quenlox
