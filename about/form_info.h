// The window that says what this program is: versions, and the way to its licences and its guide. On the user-interface
// thread.
#pragma once

#include <string>

#include "forms/form.h"

namespace quenlox {

class Dialogs;
class FileSystem;
class Shell;

class FormInfo : public Form {
  public:
    struct Versions {
        std::string program, vbmp3, gogo;  // gogo empty: the encoder is not there
    };

    // `page` is the address of the program's page; without one the window has no button for it.
    FormInfo(Dialogs& dialogs, FileSystem& files, Shell& shell, std::string page = Page());
    static std::string Page();  // of this build
    void setVersions(const Versions& versions);

    Label LabelName{*this, "LabelName"};
    Label LabelVersion{*this, "LabelVersion"};
    Label LabelVbmp3{*this, "LabelVbmp3"};
    Label LabelGogo{*this, "LabelGogo"};
    Label LabelLicence{*this, "LabelLicence"};
    Label LabelLibraries{*this, "LabelLibraries"};
    CommandButton CommandPage{*this, "CommandPage"};
    CommandButton CommandLicence{*this, "CommandLicence"};
    CommandButton CommandHelp{*this, "CommandHelp"};
    CommandButton CommandClose{*this, "CommandClose"};

    void CommandPage_Click();
    void CommandLicence_Click();
    void CommandHelp_Click();
    void Form_Shown() override { moveToMiddleOnce(); }
    void Form_Unload(bool& cancel) override;
    Layout layout() override;

  private:
    void open(const std::string& name, bool there, const std::string& whenMissing);

    Dialogs& dialogs_;
    FileSystem& files_;
    Shell& shell_;
    std::string page_;
};

}  // namespace quenlox
