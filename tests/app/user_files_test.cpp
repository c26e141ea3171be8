#include "platform/user_files.h"

#include <gtest/gtest.h>

#include "tests/fakes/fake_file_system.h"

namespace quenlox {
namespace {

constexpr const char* kProgram = "D:\\Player";
constexpr const char* kUser = "C:\\Users\\A\\AppData\\Roaming\\Quenlox";

TEST(UserFiles, StayBesideTheProgramUnlessNobodyMayWriteThere) {
    const struct {
        const char* program;
        bool writable;
        const char *applicationData, *expected;
    } cases[] = {
        {kProgram, true, "C:\\Users\\A\\AppData\\Roaming", kProgram},
        {kProgram, true, "", kProgram},
        {kProgram, false, "C:\\Users\\A\\AppData\\Roaming", kUser},
        {kProgram, false, "", kProgram},
        {"E:\\", true, "C:\\Data", "E:\\"},
        {"E:\\", false, "C:\\", "C:\\Quenlox"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ChooseUserFolder(c.program, c.writable, c.applicationData), c.expected) << c.program << c.writable;
}

TEST(UserFiles, OneBesideTheProgramCountsUntilTheUserHasOne) {
    const std::string delivered = std::string(kProgram) + "\\Quenlox.ini", own = std::string(kUser) + "\\Quenlox.ini";
    for (const bool hasOwn : {false, true}) {
        for (const bool isDelivered : {false, true}) {
            FakeFileSystem files;
            files.program = kProgram;
            files.user = kUser;
            if (hasOwn) files.add(own);
            if (isDelivered) files.add(delivered);
            EXPECT_EQ(UserFileToRead(files, "Quenlox.ini"), isDelivered && !hasOwn ? delivered : own)
                << hasOwn << isDelivered;
            EXPECT_EQ(UserFileToWrite(files, "Quenlox.ini"), own);
        }
    }
}

}  // namespace
}  // namespace quenlox
