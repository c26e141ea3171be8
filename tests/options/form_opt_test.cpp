#include "options/form_opt.h"

#include <gtest/gtest.h>

#include "app/global_state.h"

namespace quenlox {
namespace {

TEST(FormOpt, ASkinWithoutPlaceForSomethingTakesItsChoicesAway) {
    GlobalState state;
    FormOpt options(state);
    options.setOperationPanel(true);
    options.allowOperationPanel(false);
    options.allowSpectrum(false);
    options.allowLyricsWindowChoices(false);
    EXPECT_FALSE(options.operationPanel());
    EXPECT_FALSE(options.CheckPanel.enabled());
    EXPECT_FALSE(options.CheckSpeana.enabled());
    EXPECT_FALSE(options.CheckLyrics.enabled());
    for (int i = 0; i <= 5; ++i) EXPECT_EQ(options.LyricsOption[i].enabled(), i % 2 == 0) << i;
    options.allowOperationPanel(true);
    EXPECT_TRUE(options.CheckPanel.enabled());
    EXPECT_FALSE(options.operationPanel());
}

TEST(FormOpt, TheNumberOfLyricsLinesFollowsItsChoice) {
    GlobalState state;
    FormOpt options(state);
    options.LyricsOption[3].setValue(true);
    EXPECT_EQ(state.LyricsLine, 3);
}

TEST(FormOpt, ADeviceThatIsNotListedIsKept) {
    GlobalState state;
    FormOpt options(state);
    EXPECT_EQ(options.outputDevice(), -1);
    options.setOutputDevice(4);
    EXPECT_EQ(options.outputDevice(), 4);
    options.setOutputDevice(-1);
    EXPECT_EQ(options.outputDevice(), -1);
    EXPECT_EQ(options.ComboDevice.items().size(), 2u);
}

TEST(FormOpt, TheUserOnlyHidesIt) {
    GlobalState state;
    FormOpt options(state);
    options.show();
    EXPECT_FALSE(options.unload());
    EXPECT_FALSE(options.visible());
    state.ShuttingDown = true;
    EXPECT_TRUE(options.unload());
}

}  // namespace
}  // namespace quenlox
