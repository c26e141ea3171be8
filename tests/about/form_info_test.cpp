#include "about/form_info.h"

#include <gtest/gtest.h>

#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_shell.h"

namespace quenlox {
namespace {

struct FormInfoTest : testing::Test {
    FakeDialogs dialogs;
    FakeFileSystem files;
    FakeShell shell;
    FormInfo info{dialogs, files, shell};
};

TEST_F(FormInfoTest, ItOpensTheLicencesAndTheGuideBesideTheProgramOrSaysThatTheyAreMissing) {
    info.CommandLicence.click();
    info.CommandHelp.click();
    EXPECT_TRUE(shell.opened.empty());
    EXPECT_EQ(dialogs.messages.size(), 2u);
    files.add("C:\\Quenlox\\licences\\LICENSE");
    files.add("C:\\Quenlox\\Quenlox.html");
    info.CommandLicence.click();
    info.CommandHelp.click();
    EXPECT_EQ(shell.opened, (std::vector<std::string>{"C:\\Quenlox\\licences", "C:\\Quenlox\\Quenlox.html"}));
    EXPECT_EQ(dialogs.messages.size(), 2u);
}

TEST_F(FormInfoTest, ItNamesTheVersionsAndAMissingEncoder) {
    info.setVersions({"1.2.3", "4.5.6", "7.8.9"});
    EXPECT_NE(info.LabelVersion.caption().find("1.2.3"), std::string::npos);
    EXPECT_NE(info.LabelVbmp3.caption().find("4.5.6"), std::string::npos);
    EXPECT_NE(info.LabelGogo.caption().find("7.8.9"), std::string::npos);
    info.setVersions({"1.2.3", "4.5.6", ""});
    EXPECT_EQ(info.LabelGogo.caption().find("Ver"), std::string::npos);
}

TEST_F(FormInfoTest, ClosingOnlyHidesIt) {
    info.show();
    EXPECT_FALSE(info.unload());
    EXPECT_FALSE(info.visible());
}

}  // namespace
}  // namespace quenlox
