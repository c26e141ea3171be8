#include "platform/user_files.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace quenlox
