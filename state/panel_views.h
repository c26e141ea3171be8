// The views of the panel: six groups of ten, numbered group * 10 + variant, with the names that menus give them.
#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace quenlox {

inline constexpr int kPanelGroups = 6, kPanelVariants = 10, kPanelViews = kPanelGroups * kPanelVariants;

struct PanelGroup {
    const char* name;
    std::array<const char*, kPanelVariants> variants;
};

inline constexpr std::array<PanelGroup, kPanelGroups> kPanelGroupNames{{
    {"図形", {"波形", "左右の波形", "塗りつぶし", "輪郭", "リサージュ", "輪", "波紋", "泡", "らせん", "星"}},
    {"軌跡", {"煙", "雨", "流れ", "二つの流れ", "開く幕", "閉じる幕", "花", "坂", "渦", "火花"}},
    {"リボン", {"リボン", "二本のリボン", "塔", "上下の塔", "音量の記録", "両側の記録", "海の太陽", "旗", "モザイク", "十字"}},
    {"スペクトル", {"棒", "ランプ", "中央から", "水面", "曲線", "ソノグラム", "山なみ", "炎", "ブロック", "洞窟"}},
    {"スペクトルと波形", {"棒に波形", "棒の上に波形", "中央に波形", "ソノグラムに波形", "オーロラ", "輪と棒", "色の波形", "夜景",
                          "棒の間の図形", "波乗り"}},
    {"鏡", {"トンネル", "吸い込み", "横広がり", "縦広がり", "万華鏡", "湖", "小窓", "レンズ", "呼吸", "彗星"}},
}};

// "鏡 湖"; empty for a number that stands for no view.
inline std::string PanelViewName(int view) {
    if (view < 0 || view >= kPanelViews) return {};
    const PanelGroup& group = kPanelGroupNames[static_cast<std::size_t>(view / kPanelVariants)];
    return std::string(group.name) + " " + group.variants[static_cast<std::size_t>(view % kPanelVariants)];
}

}  // namespace quenlox
