#include "skin/top_menus.h"

#include <utility>

#include "skin/top_controls.h"
#include "state/options.h"
#include "state/panel_views.h"
#include "text/strings.h"

namespace quenlox {
namespace {

class Builder {
  public:
    explicit Builder(const PerformCommand& perform) : perform_(perform) {}

    MenuItem item(const char* caption, TopCommand command, int index = 0) const {
        return MenuCommand(caption, act(command, index));
    }
    MenuItem check(const char* caption, TopCommand command, bool checked, int index = 0) const {
        return MenuChoice(caption, checked, act(command, index));
    }
    MenuItem choice(std::string caption, TopCommand command, int index, bool chosen) const {
        return MenuChoice(std::move(caption), chosen, act(command, index), true);
    }

  private:
    std::function<void()> act(TopCommand command, int index) const {
        return [perform = perform_, command, index] { perform(command, index); };
    }

    const PerformCommand& perform_;
};

MenuItem EnabledWhen(bool enabled, MenuItem item) {
    item.enabled = enabled;
    return item;
}

MenuItem Skins(const Builder& build, const MainMenuFacts& facts) {
    std::vector<MenuItem> items;
    const auto add = [&](const std::string& folder, const std::string& caption) {
        const bool shown = EqualsNoCase(facts.skin, folder);
        items.push_back(build.choice(caption, TopCommand::Skin, static_cast<int>(items.size()), shown));
    };
    add("default", "Default");
    for (const std::string& folder : facts.skins) add(folder, ReplaceAll(folder, "&", "&&"));
    items.push_back(MenuSeparator());
    items.push_back(build.item("スキンを読み直す(&R)\tF5", TopCommand::ReloadSkin));
    items.push_back(build.item("スキンを点検(&K)...", TopCommand::CheckSkin));
    return SubMenu("スキンの変更(&S)", std::move(items));
}

MenuItem Playback(const Builder& build) {
    constexpr const char* kActions[kButtonCount] = {"再生／停止(&P)",   "一時停止(&U)",     "前の曲(&B)",  "次の曲(&N)",
                                                    "音程を下げる(&L)", "音程を上げる(&H)", "速度変更(&D)"};
    std::vector<MenuItem> items;
    for (int n = 0; n < kButtonCount; ++n) items.push_back(build.item(kActions[n], TopCommand::Playback, n));
    items.push_back(MenuSeparator());
    items.push_back(build.item("5秒進む(&5)\t→", TopCommand::Seek, 5));
    items.push_back(build.item("5秒戻る(&4)\t←", TopCommand::Seek, -5));
    items.push_back(build.item("30秒進む(&3)\tCtrl+→", TopCommand::Seek, 30));
    items.push_back(build.item("30秒戻る(&2)\tCtrl+←", TopCommand::Seek, -30));
    items.push_back(MenuSeparator());
    items.push_back(build.item("再生モード(&M)\tR", TopCommand::PlayMode));
    items.push_back(build.item("経過／残り時間(&T)\tT", TopCommand::TimeMode));
    items.push_back(build.item("曲名／ファイル名(&F)\tF", TopCommand::TitleMode));
    return SubMenu("再生操作(&B)", std::move(items));
}

MenuItem Volume(const Builder& build, const MainMenuFacts& facts) {
    return SubMenu("音量(&E)", {build.item("上げる(&U)\t↑", TopCommand::Volume, kVolumeStep),
                                build.item("下げる(&D)\t↓", TopCommand::Volume, -kVolumeStep),
                                build.check("消音(&M)\tM", TopCommand::Mute, facts.muted)});
}

MenuItem Views(const Builder& build, const MainMenuFacts& facts) {
    std::vector<MenuItem> items{build.item("次の表示(&N)\tV", TopCommand::NextView),
                                build.item("次の種類(&G)\tShift+V", TopCommand::NextGroup), MenuSeparator()};
    for (int group = 0; group < kPanelGroups; ++group) {
        const PanelGroup& names = kPanelGroupNames[static_cast<std::size_t>(group)];
        std::vector<MenuItem> variants;
        for (int variant = 0; variant < kPanelVariants; ++variant) {
            const int view = group * kPanelVariants + variant;
            const std::string key = std::to_string((variant + 1) % 10);
            const std::string name = names.variants[static_cast<std::size_t>(variant)];
            variants.push_back(build.choice(name + "(&" + key + ")", TopCommand::View, view, view == facts.view));
        }
        items.push_back(SubMenu(names.name + ("(&" + std::to_string(group + 1)) + ")", std::move(variants)));
    }
    MenuItem views = SubMenu("パネルの表示(&W)", std::move(items));
    views.enabled = facts.hasSpectrum;
    return views;
}

MenuItem Scales(const Builder& build, const MainMenuFacts& facts) {
    std::vector<MenuItem> items;
    for (const ZoomChoice& zoom : kZoomChoices) {
        const std::string caption = zoom.name + std::string("(&") + zoom.key + ")";
        items.push_back(build.choice(caption, TopCommand::Scale, zoom.percent, zoom.percent == facts.zoom));
    }
    return SubMenu("表示倍率(&Z)", std::move(items));
}

}  // namespace

Menu MainMenu(const MainMenuFacts& facts, const PerformCommand& perform) {
    const Builder build(perform);
    return {
        "menuMain",
        {build.check("常に手前に表示(&T)", TopCommand::AlwaysOnTop, facts.alwaysOnTop),
         EnabledWhen(facts.hasOperationPanel,
                     build.check("操作パネルモード(&P)", TopCommand::OperationPanel, facts.operationPanel)),
         Skins(build, facts), build.check("タイトルアニメーション(&A)", TopCommand::TitleAnimation, facts.titleRuns),
         EnabledWhen(facts.hasSpectrum, build.check("オシロ・スペアナ表示(&O)", TopCommand::Spectrum, facts.spectrum)),
         build.check("グライコ(&G)", TopCommand::Equalizer, facts.equalizer),
         build.item("タグ情報(&I)", TopCommand::Command, kTagCommand),
         build.item("ファイル変換(&C)", TopCommand::Command, kConvCommand),
         build.item("バージョン情報(&V)", TopCommand::About), MenuSeparator(),
         build.item("ファイルを開く(&F)...\tCtrl+O", TopCommand::OpenFile),
         build.item("フォルダを開く(&D)...\tCtrl+Shift+O", TopCommand::OpenFolder), MenuSeparator(),
         // What the buttons of a skin do, for those who use the keyboard or a skin without that button.
         build.check("プレイリスト(&L)", TopCommand::Command, facts.list, kListCommand),
         build.check("オプション(&N)", TopCommand::Command, facts.options, kOptCommand),
         build.check("歌詞(&Y)", TopCommand::Lyrics, facts.lyrics), Playback(build), Volume(build, facts),
         Views(build, facts), Scales(build, facts), build.item("ヘルプ(&H)\tF1", TopCommand::Command, kHelpCommand),
         build.item("通知領域に入れる(&M)", TopCommand::Command, kMiniCommand), MenuSeparator(),
         build.item("Quenloxの終了(&Q)", TopCommand::Quit)}};
}

Menu TrayMenu(bool playing, bool paused, const PerformCommand& perform) {
    const Builder build(perform);
    const bool opened = playing || paused;
    return {"menuTray",
            {build.item("ﾒｲﾝ画面を表示", TopCommand::Restore), MenuSeparator(),
             build.item(opened ? "停止(&P)" : "再生(&P)", TopCommand::Playback, kPlayButton),
             EnabledWhen(opened, build.check("一時停止(&U)", TopCommand::Playback, paused, kPauseButton)),
             build.item("前の曲(&B)", TopCommand::Playback, kBackButton),
             build.item("次の曲(&N)", TopCommand::Playback, kNextButton), MenuSeparator(),
             build.item("Quenloxの終了", TopCommand::Quit)}};
}

}  // namespace quenlox
