#include "about/form_info.h"

#include <gtest/gtest.h>

#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_shell.h"

namespace quenlox {
namespace {

struct About {
    FakeDialogs dialogs;
    FakeFileSystem files;
    FakeShell shell;
    FormInfo info{dialogs, files, shell};
};

TEST(FormInfo, ItOpensTheLicencesAndTheGuideBesideTheProgramOrSaysThatTheyAreMissing) {
    About a;
    a.info.CommandLicence.click();
    a.info.CommandHelp.click();
    EXPECT_TRUE(a.shell.opened.empty());
    EXPECT_EQ(a.dialogs.messages.size(), 2u);
    a.files.add("C:\\Quenlox\\licences\\LICENSE");
    a.files.add("C:\\Quenlox\\Quenlox.html");
    a.info.CommandLicence.click();
    a.info.CommandHelp.click();
    EXPECT_EQ(a.shell.opened, (std::vector<std::string>{"C:\\Quenlox\\licences", "C:\\Quenlox\\Quenlox.html"}));
    EXPECT_EQ(a.dialogs.messages.size(), 2u);
}

TEST(FormInfo, ItNamesTheVersionsAndAMissingEncoder) {
    About a;
    a.info.setVersions({"1.2.3", "4.5.6", "7.8.9"});
    EXPECT_NE(a.info.LabelVersion.caption().find("1.2.3"), std::string::npos);
    EXPECT_NE(a.info.LabelVbmp3.caption().find("4.5.6"), std::string::npos);
    EXPECT_NE(a.info.LabelGogo.caption().find("7.8.9"), std::string::npos);
    a.info.setVersions({"1.2.3", "4.5.6", ""});
    EXPECT_EQ(a.info.LabelGogo.caption().find("Ver"), std::string::npos);
}

TEST(FormInfo, ClosingOnlyHidesIt) {
    About a;
    a.info.show();
    EXPECT_FALSE(a.info.unload());
    EXPECT_FALSE(a.info.visible());
}

}  // namespace
}  // namespace quenlox
