// What the options window shows: which field stands behind which control, captions, the figures beside the sliders,
// four tabs.
#include <array>
#include <cstdlib>
#include <initializer_list>
#include <string>

#include "options/form_opt.h"

namespace quenlox {
namespace {

constexpr int kName = 76, kFigure = 44, kButtonWidth = 72, kButtonHeight = 14, kSampleHeight = 14, kRange = 52;

std::string Tenths(int tenths) { return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10); }

// What the value of a slider means.
std::string Step(std::int32_t value) { return std::to_string(value) + "/10"; }
std::string Percent(std::int32_t value) { return std::to_string(value) + "%"; }
std::string Seconds(std::int32_t value) { return std::to_string(value) + "秒"; }
std::string Milliseconds(std::int32_t value) { return std::to_string(value) + "ms"; }
std::string EverySeconds(std::int32_t value) { return value == 0 ? "しない" : std::to_string(value * 2) + "秒ごと"; }
std::string Speed(std::int32_t step) { return Tenths(10 + (step - 1) * 2) + "倍"; }
std::string Shift(std::int32_t value) {
    const std::int32_t later = value - kLyricsOnTime;
    return later == 0 ? "ずらさない" : Tenths(std::abs(later)) + (later > 0 ? "秒遅く" : "秒早く");
}

struct Text {
    Control& control;
    const char* text;
};

void Caption(std::initializer_list<Text> captions) {
    for (const auto& [control, caption] : captions) control.setCaption(caption);
}

}  // namespace

void FormOpt::bindControls() {
    bind(CheckAnime, &Options::TitleAnimation);
    bind(HScrollAnime, &Options::TitleAnimationSpeed, FigureAnime, Step);
    bind(CheckSpeana, &Options::SpectrumShown);
    bind(HScrollSpeana, &Options::SpectrumSpeed, FigureSpeana, Step);
    bind(HScrollSpeanaIntro, &Options::SpectrumIntro, FigureIntroView, EverySeconds);
    bind(ComboSkinScale, &Options::SkinZoom);
    bind(FftOption, &Options::SpectrumBands);
    bind(CheckPanel, &Options::OperationPanel);

    bind(QualityOption, &Options::Quality);
    bind(HScrollHiPitch, &Options::HighPitch, FigureHiPitch, Percent);
    bind(HScrollLowPitch, &Options::LowPitch, FigureLowPitch, Percent);
    bind(HScrollStepPitch, &Options::StepPitch, FigureStepPitch, Speed);
    bind(CheckIntro, &Options::IntroPlay);
    bind(HScrollIntro, &Options::IntroSeconds, FigureIntro, Seconds);
    bind(VolumeOption, &Options::VolumeDrives);
    bind(CheckGapless, &Options::GaplessNext);
    bind(CheckPassOver, &Options::PassOverUnplayable);
    bind(HScrollBuffer, &Options::OutputBuffer, FigureBuffer, Milliseconds);

    bind(CheckLyrics, &Options::LyricsShown);
    bind(CheckLyricsSelf, &Options::LyricsSelf);
    bind(HScrollLyricsTime, &Options::LyricsTime, FigureLyricsTime, Shift);
    bind(LyricsOption, &Options::LyricsLine);
    bind(TextLyricsFont, &Options::LyricsFont);
    bind(CheckLyricsMain, &Options::Lyrics3First);
    bind(CheckTimeTag, &Options::TimeTagShown);
    bind(CheckLyricsBold, &Options::LyricsBold);
    bind(CheckLyricsSecond, &Options::LyricsSecondColor);
    bind(CheckLyricsSmooth, &Options::LyricsSmooth);
    bindWhenLeft(TextLyricsDir, &Options::LyricsFolder);
    bindWhenLeft(TextBmpDir, &Options::PictureFolder);

    bind(CheckReName, &Options::EstimateFromFileName);
    bindWhenLeft(TextReName, &Options::RenameFormat);
    bind(CheckListType, &Options::TagLists);
    bind(CheckListTypeS, &Options::ListColumns);
    bind(CheckListTime, &Options::ListTimeColumn);
    bind(CheckDelList, &Options::DeleteFromList);
    bind(ComboSideFiles, &Options::RenameSideFiles);
    bind(CheckTellUnsaved, &Options::TellUnsaved);
}

void FormOpt::setCaptions() {
    setCaption("オプション");
    captionDisplayAndPlayback();
    captionLyricsAndLists();
    // In the order of the sliders in the layout.
    constexpr std::array<const char*, kScales> kRanges{"遅い～速い", "遅い～速い", "しない～120秒",
                                                       "101～200%",  "50～99%",    "1.2～4.0倍",
                                                       "1～60秒",    "50～2000ms", "早く～遅く"};
    for (int i = 0; i < kScales; ++i) ScaleRange[i].setCaption(kRanges[static_cast<std::size_t>(i)]);
    for (const auto& [control, tooltip] : std::initializer_list<Text>{
             {ComboCdDrive,
              "音楽CDの曲を表示・再生するドライブ。記憶した曲が見つからないときも、このドライブの同じ番号の曲を再生しま"
              "す"},
             {QualityOption[0], "ふつうの音質です。音程や速度を変えて再生するときに効きます"},
             {QualityOption[1], "高い音まできれいに変えます"},
             {QualityOption[2], "音質を少し下げて、CPUの負担を減らします"},
             {ComboSideFiles, "曲のファイル名を変えるとき、同じ名前の歌詞や画像のファイルの名前も変えるかどうか"},
             {CheckTellUnsaved,
              "設定かプレイリストを書き込めないとき、ファイルと理由を示して、もう一度保存するかどうかをたずねます"},
             {TextBmpDir, "歌詞ウィンドウの背景に表示するBMPファイルのフォルダ"},
         }) {
        control.setTooltip(tooltip);
    }
}

void FormOpt::captionDisplayAndPlayback() {
    Caption({
        {FrameMain, "メイン画面"},
        {LabelScale, "表示倍率(&Z)"},
        {CheckPanel, "操作パネルモード(&O)"},
        {CheckAnime, "タイトルアニメーション(&A)"},
        {LabelAnime, "動く速さ(&S)"},
        {FrameSpeana, "オシロ・スペアナ"},
        {CheckSpeana, "オシロ・スペアナを表示する(&W)"},
        {LabelSpeana, "動く速さ(&E)"},
        {LabelIntroView, "表示の自動切替(&T)"},
        {LabelFft, "スペアナの帯域数(&B)"},
        {FftOption[0], "21"},
        {FftOption[1], "42"},
        {FftOption[2], "85"},
        {FramePitch, "音程・速度"},
        {LabelHiPitch, "音程を上げる(&H)"},
        {LabelLowPitch, "音程を下げる(&W)"},
        {LabelStepPitch, "速度変更(&S)"},
        {LabelQuality, "音質(&Q)"},
        {QualityOption[0], "標準"},
        {QualityOption[1], "高音質"},
        {QualityOption[2], "負荷優先"},
        {FramePlay, "再生"},
        {CheckIntro, "イントロ再生(&I)"},
        {HScrollIntro, "イントロの長さ"},
        {CheckGapless, "曲間をあけずに次の曲を再生する(&G)"},
        {CheckPassOver, "再生できない曲を飛ばす(&A)"},
        {LabelCd, "CDドライブ(&K)"},
        {FrameOutput, "出力"},
        {LabelDevice, "デバイス(&E)"},
        {LabelBuffer, "バッファ(&B)"},
        {FrameVolume, "音量バーで変える音量(&V)"},
        {VolumeOption[0], "マスター音量だけ"},
        {VolumeOption[1], "WAVE・MIDI・CDの音量も"},
    });
}

void FormOpt::captionLyricsAndLists() {
    Caption({
        {FrameLyrics, "歌詞の表示"},
        {CheckLyrics, "歌詞ウィンドウを表示する(&W)"},
        {LabelLines, "表示する行数(&I)"},
        {LyricsOption[1], "1行"},
        {LyricsOption[3], "3行"},
        {LyricsOption[5], "5行"},
        {LabelFont, "フォント(&F)"},
        {CommandLyricsFont, "選択(&H)..."},
        {LabelFontSample, "あなたの歌　Song 123"},
        {CheckTimeTag, "タイムタグも表示する(&T)"},
        {CheckLyricsBold, "太字で表示する(&B)"},
        {CheckLyricsSecond, "スキンの第2歌詞色を使う(&2)"},
        {CheckLyricsSmooth, "歌詞をなめらかに送る(&M)"},
        {CheckLyricsSelf, "タイムタグのない歌詞も曲に合わせて送る(&S)"},
        {LabelLyricsTime, "表示のタイミング(&G)"},
        {FrameSources, "歌詞の取得"},
        {CheckLyricsMain, "歌詞ファイルよりLyrics3を優先する(&3)"},
        {LabelLyricsDir, "歌詞フォルダ(&O)"},
        {CommandLyricsDir, "参照(&E)..."},
        {FrameBmp, "歌詞ウィンドウの背景"},
        {LabelBmpDir, "画像フォルダ(&U)"},
        {CommandBmpDir, "参照(&A)..."},
        {LabelBmpNames, "「曲のファイル名.bmp」か「曲のフォルダ名.bmp」を表示します。"},
        {FrameList, "プレイリスト"},
        {CheckListType, "ﾌﾟﾚｲﾘｽﾄをﾀｸﾞ情報取得ﾓｰﾄﾞにする(要再起動)(&T)"},
        {CheckListTypeS, "ファイル名表示でも項目に分ける(&S)"},
        {CheckListTime, "演奏時間を表示する(&I)"},
        {CheckDelList, "再生できないファイルをリストから外す(&E)"},
        {CheckTellUnsaved, "終了時に保存できなければ知らせる(&W)"},
        {FrameReName, "ﾌｧｲﾙ名変換の標準書式(&F)"},
        {CheckReName, "ﾌｧｲﾙ名変換の標準書式でﾀｸﾞ情報を推定(&G)"},
        {LabelSideFiles, "同じ名前の歌詞など(&Y)"},
        {LabelTokens, "*T ＝ タイトル　*N ＝ アーティスト名\r\n*B ＝ アルバム名　*G ＝ ジャンル"},
        {LabelCase, "半角で大文字小文字の区別なし。拡張子は不要。"},
        {LabelForbidden, "\\ / : , ; ? \" < > | はWindowsの制限により使用不可。"},
        {Tabs, "オプションの種類"},
        {CommandDefaults, "初期設定に戻す(&R)"},
        {CommandClose, "閉じる(&C)"},
    });
}

Layout FormOpt::layout() {
    int scale = 0;
    const auto slider = [this, &scale](Control& name, Control& bar, Control& figure) {
        return Row({Item(name, kName), Item(bar, 90, 10, 1), Item(figure, kFigure), Item(ScaleRange[scale++], kRange)});
    };
    const Layout display =
        Column({Group(FrameMain, Column({Row({Item(LabelScale, kName), Item(ComboSkinScale, 60)}), Item(CheckPanel),
                                         Item(CheckAnime), slider(LabelAnime, HScrollAnime, FigureAnime)})),
                Group(FrameSpeana, Column({Item(CheckSpeana), slider(LabelSpeana, HScrollSpeana, FigureSpeana),
                                           slider(LabelIntroView, HScrollSpeanaIntro, FigureIntroView),
                                           Row({Item(LabelFft, kName), Item(FftOption[0], 40), Item(FftOption[1], 40),
                                                Item(FftOption[2], 40)})}))});
    const Layout play =
        Column({Group(FramePitch, Column({slider(LabelHiPitch, HScrollHiPitch, FigureHiPitch),
                                          slider(LabelLowPitch, HScrollLowPitch, FigureLowPitch),
                                          slider(LabelStepPitch, HScrollStepPitch, FigureStepPitch),
                                          Row({Item(LabelQuality, kName), Item(QualityOption[0], 40),
                                               Item(QualityOption[1], 48), Item(QualityOption[2], 52)})})),
                Group(FramePlay, Column({slider(CheckIntro, HScrollIntro, FigureIntro), Item(CheckGapless),
                                         Item(CheckPassOver), Row({Item(LabelCd, kName), Item(ComboCdDrive, 60)})})),
                Group(FrameOutput, Column({Row({Item(LabelDevice, kName), Item(ComboDevice, 150, 0, 1)}),
                                           slider(LabelBuffer, HScrollBuffer, FigureBuffer)})),
                Group(FrameVolume, Row({Item(VolumeOption[0], 90), Item(VolumeOption[1], 120)}))});
    const Layout lyrics =
        Column({Group(FrameLyrics, Column({Item(CheckLyrics),
                                           Row({Item(LabelLines, kName), Item(LyricsOption[1], 40),
                                                Item(LyricsOption[3], 40), Item(LyricsOption[5], 40)}),
                                           Row({Item(LabelFont, kName), Item(TextLyricsFont, 90, 0, 1),
                                                Item(CommandLyricsFont, 44, kButtonHeight)}),
                                           Row({Space(kName, 0), Item(LabelFontSample, 130, kSampleHeight, 1)}),
                                           Row({Item(CheckTimeTag), Item(CheckLyricsBold)}), Item(CheckLyricsSecond),
                                           Item(CheckLyricsSmooth), Item(CheckLyricsSelf),
                                           slider(LabelLyricsTime, HScrollLyricsTime, FigureLyricsTime)})),
                Group(FrameSources,
                      Column({Item(CheckLyricsMain), Row({Item(LabelLyricsDir, 56), Item(TextLyricsDir, 110, 0, 1),
                                                          Item(CommandLyricsDir, 44, kButtonHeight)})})),
                Group(FrameBmp, Column({Row({Item(LabelBmpDir, 56), Item(TextBmpDir, 110, 0, 1),
                                             Item(CommandBmpDir, 44, kButtonHeight)}),
                                        Item(LabelBmpNames, 230)}))});
    const Layout lists =
        Column({Group(FrameList, Column({Item(CheckListType), Item(CheckListTypeS), Item(CheckListTime),
                                         Item(CheckDelList), Item(CheckTellUnsaved)})),
                Group(FrameReName, Column({Item(TextReName, 200, 0, 1), Item(LabelTokens, 230, 20),
                                           Item(LabelCase, 230), Item(LabelForbidden, 230), Item(CheckReName),
                                           Row({Item(LabelSideFiles, kName), Item(ComboSideFiles, 80)})}))});
    return Column({Pages(Tabs, {display, play, lyrics, lists}, 1),
                   Row({Item(CommandDefaults, kButtonWidth, kButtonHeight), Space(0, 0, 1),
                        Item(CommandClose, kButtonWidth, kButtonHeight)})});
}

}  // namespace quenlox
