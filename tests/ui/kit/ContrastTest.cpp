// Text must reach 4.5:1 and graphics 3:1 (WCAG 2.1, success criteria 1.4.3 and
// 1.4.11) in every theme and appearance. Translucent surfaces are laid over the
// window's gradient at its three stops, and the worst result counts.

#include "ui/kit/DesignTokens.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr double kText = 4.5;
constexpr double kGraphic = 3.0;

using ColorOf = QColor Palette::*;

struct Pair {
    const char* name;
    double floor;
    ColorOf ink;
    std::vector<ColorOf> surfaces;          // from the window's ground upwards
    std::vector<ColorOf> darkSurfaces = {}; // in the dark, where they are others
};

QColor over(const QColor& top, const QColor& below)
{
    const float alpha = top.alphaF();
    return QColor::fromRgbF(top.redF() * alpha + below.redF() * (1 - alpha), top.greenF() * alpha + below.greenF() * (1 - alpha),
                            top.blueF() * alpha + below.blueF() * (1 - alpha));
}

double luminance(const QColor& color)
{
    const auto linear = [](double part) { return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(double(color.redF())) + 0.7152 * linear(double(color.greenF())) +
           0.0722 * linear(double(color.blueF()));
}

double contrast(const QColor& a, const QColor& b)
{
    const double brighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (brighter + 0.05) / (darker + 0.05);
}

// What `ink` comes to on surfaces laid over the window's ground, at its worst place.
double worstContrast(const Palette& palette, const QColor& ink, const std::vector<QColor>& surfaces)
{
    double worst = 21;
    for (const auto& [at, stop] : palette.windowStops) {
        QColor ground = over(stop, palette.windowBase);
        for (const QColor& surface : surfaces)
            ground = over(surface, ground);
        worst = std::min(worst, contrast(over(ink, ground), ground));
    }
    return worst;
}

double worstContrast(const Palette& palette, const Pair& pair, bool isDark)
{
    std::vector<QColor> surfaces;
    for (const ColorOf surface : isDark && !pair.darkSurfaces.empty() ? pair.darkSurfaces : pair.surfaces)
        surfaces.push_back(palette.*surface);
    return worstContrast(palette, palette.*pair.ink, surfaces);
}

QColor between(const QColor& a, const QColor& b, double share)
{
    const auto mix = [share](float x, float y) { return float(x + (y - x) * share); };
    return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()), mix(a.blueF(), b.blueF()));
}

// Calls `look` for every theme in both appearances, with its name for messages.
void forEachPalette(const std::function<void(const AppTheme&, const Palette&, bool isDark, const std::string& name)>& look)
{
    const DesignTokens tokens = DesignTokens::builtIn();
    for (const AppTheme& theme : tokens.themes) {
        look(theme, theme.light, false, theme.id.toStdString() + " light: ");
        look(theme, theme.dark, true, theme.id.toStdString() + " dark: ");
    }
}

using P = Palette;

// Each pair as a component draws it.
const std::vector<Pair> kPairs{
    {"segment", kText, &P::textSecondary, {&P::toolbarButton}},
    {"segment, chosen", kText, &P::textPrimary, {&P::toolbarButton, &P::raised}},
    {"segment's icon, chosen", kGraphic, &P::accentInk, {&P::toolbarButton, &P::raised}},
    {"toolbar button", kText, &P::textPrimary, {&P::toolbarButton}},
    {"toolbar button under the pointer", kText, &P::textPrimary, {&P::toolbarButtonHover}},
    {"button", kText, &P::textPrimary, {&P::panel, &P::buttonFill}},
    {"button under the pointer", kText, &P::textPrimary, {&P::panel, &P::buttonHover}},
    {"accent button", kText, &P::accentText, {&P::accent}},
    {"accent button under the pointer", kText, &P::accentText, {&P::accentHover}},
    {"accent button, pressed", kText, &P::accentText, {&P::accentPressed}},
    {"picked chip", kText, &P::accentSoftText, {&P::panel, &P::accentSoft}},
    {"row's name", kText, &P::textPrimary, {&P::panel}},
    {"row's second line", kText, &P::textSecondary, {&P::panel}},
    {"row's second line under the pointer", kText, &P::textSecondary, {&P::panel, &P::rowHover}},
    {"row's second line, pressed", kText, &P::textSecondary, {&P::panel, &P::rowPressed}},
    {"row's second line, selected", kText, &P::textSecondary, {&P::panel, &P::rowSelected}},
    {"row's second line, selected without focus", kText, &P::textSecondary, {&P::panel, &P::rowSelectedInactive}},
    {"thumbnail", kGraphic, &P::waveOutside, {&P::panel}},
    {"thumbnail under the pointer", kGraphic, &P::control, {&P::panel, &P::rowHover}},
    {"thumbnail, selected", kGraphic, &P::waveUnplayedRms, {&P::panel, &P::rowSelected}},
    {"thumbnail, selected without focus", kGraphic, &P::control, {&P::panel, &P::rowSelectedInactive}},
    {"credit icon on a selected row", kGraphic, &P::textSecondary, {&P::panel, &P::rowSelected}},
    {"focus ring on a row", kGraphic, &P::focusRing, {&P::panel, &P::rowSelected}},
    {"focus ring on the window", kGraphic, &P::focusRing, {}},
    {"focus ring on a panel", kGraphic, &P::focusRing, {&P::panel}},
    {"title", kText, &P::textPrimary, {&P::panel}},
    {"tag", kText, &P::textSecondary, {&P::panel, &P::buttonFill}},
    {"credit icon of the open sound", kGraphic, &P::warning, {&P::panel}},
    {"ruler", kText, &P::textTertiary, {&P::panel, &P::card, &P::well}},
    {"wave's peak", kGraphic, &P::waveOutside, {&P::panel, &P::card, &P::well}},
    {"wave's RMS", kGraphic, &P::waveOutsideRms, {&P::panel, &P::card, &P::well}},
    {"what is waited for", kText, &P::textSecondary, {&P::popover}},
    {"spinner", kGraphic, &P::accentInk, {&P::panel}},
    {"drop target", kText, &P::accentInk, {&P::panel, &P::waveRange}},
    {"notice", kText, &P::textPrimary, {&P::popover}},
    {"notice's check", kGraphic, &P::success, {&P::popover}},
    {"notice's warning", kGraphic, &P::danger, {&P::popover}},
    {"error beside what failed", kText, &P::dangerText, {&P::panel, &P::dangerSoft}},
    {"warning beside what failed", kText, &P::warningText, {&P::panel, &P::warningSoft}},
    {"menu", kText, &P::textPrimary, {&P::popover}},
    {"menu's key", kText, &P::textTertiary, {&P::popover}},
    {"chosen line of a menu", kText, &P::accentSoftText, {&P::popover, &P::accentSoft}},
    {"tip's key", kText, &P::textTertiary, {&P::popover}},
    {"typed text", kText, &P::textPrimary, {&P::panel, &P::fieldFill}},
    {"prompt of a field", kText, &P::textSecondary, {&P::panel, &P::fieldFill}},
    {"edge of a wrong field", kGraphic, &P::danger, {&P::panel}},
    {"switch, off", kGraphic, &P::control, {&P::panel}},
    {"switch, on", kGraphic, &P::accent, {&P::panel}},
    {"slider's fill", kGraphic, &P::sliderFill, {&P::panel}},
    {"first bar of the empty library", kGraphic, &P::wavePlayedStart, {&P::panel}},
    {"last bar of the empty library", kGraphic, &P::wavePlayedEnd, {&P::panel}},

    {"button of the toolbar without a ground", kGraphic, &P::textSecondary, {&P::toolbar}},
    {"title of the settings", kText, &P::textPrimary, {&P::popover}},
    {"close button of the settings", kGraphic, &P::textSecondary, {&P::popover}},
    {"setting", kText, &P::textPrimary, {&P::popover, &P::buttonFill}},
    {"note, value, and theme's name", kText, &P::textSecondary, {&P::popover, &P::buttonFill}},
    {"ring of the chosen theme", kGraphic, &P::accentInk, {&P::popover, &P::buttonFill}},
    {"focus ring in the settings", kGraphic, &P::focusRing, {&P::popover, &P::buttonFill}},
    {"switch of a setting, off", kGraphic, &P::control, {&P::popover, &P::buttonFill}},
    {"switch of a setting, on", kGraphic, &P::accent, {&P::popover, &P::buttonFill}},
    {"segment of a setting",
     kText,
     &P::textSecondary,
     {&P::popover, &P::buttonFill, &P::buttonFill},
     {&P::popover, &P::buttonFill, &P::fieldFill}},
    {"segment of a setting under the pointer",
     kText,
     &P::textSecondary,
     {&P::popover, &P::buttonFill, &P::buttonFill, &P::buttonFill},
     {&P::popover, &P::buttonFill, &P::fieldFill, &P::buttonFill}},
    {"segment of a setting, chosen", kText, &P::textPrimary, {&P::raised}},
    {"button of a setting", kText, &P::textPrimary, {&P::raised}, {&P::popover, &P::buttonFill, &P::buttonFill}},
    {"button of a setting under the pointer",
     kText,
     &P::textPrimary,
     {&P::raised, &P::buttonFill},
     {&P::popover, &P::buttonFill, &P::buttonHover}},
    {"button of a setting, pressed",
     kText,
     &P::textPrimary,
     {&P::raised, &P::buttonHover},
     {&P::popover, &P::buttonFill, &P::buttonPressed}},
};

// Inks on the surfaces that surfaces to come may lay them on.
const std::vector<Pair> kPalette = [] {
    std::vector<Pair> pairs;
    const auto add = [&pairs](double floor, std::vector<std::pair<const char*, ColorOf>> inks,
                              const std::vector<std::vector<ColorOf>>& grounds) {
        for (const auto& [name, ink] : inks) {
            for (const auto& ground : grounds)
                pairs.push_back({name, floor, ink, ground, {}});
        }
    };
    add(kText, {{"textPrimary", &P::textPrimary}, {"textSecondary", &P::textSecondary}},
        {{},
         {&P::toolbar},
         {&P::toolbarButton},
         {&P::panel},
         {&P::panel, &P::card},
         {&P::panel, &P::card, &P::well},
         {&P::panel, &P::rowHover},
         {&P::panel, &P::rowSelected},
         {&P::panel, &P::fieldFill},
         {&P::panel, &P::buttonFill},
         {&P::panel, &P::buttonHover},
         {&P::popover},
         {&P::popover, &P::buttonFill}});
    add(kText, {{"textTertiary", &P::textTertiary}},
        {{},
         {&P::toolbar},
         {&P::panel},
         {&P::panel, &P::card},
         {&P::panel, &P::card, &P::well},
         {&P::panel, &P::rowHover},
         {&P::popover},
         {&P::popover, &P::buttonFill}});
    add(kText, {{"accentInk", &P::accentInk}},
        {{&P::toolbar},
         {&P::panel},
         {&P::panel, &P::card},
         {&P::panel, &P::rowHover},
         {&P::panel, &P::rowSelected},
         {&P::popover}});
    add(kText, {{"accentText", &P::accentText}}, {{&P::accent}, {&P::accentHover}, {&P::accentPressed}});
    add(kText, {{"accentSoftText", &P::accentSoftText}},
        {{&P::panel, &P::accentSoft}, {&P::panel, &P::card, &P::accentSoft}, {&P::panel, &P::accentSoftHover}});
    add(kText, {{"danger", &P::danger}, {"warning", &P::warning}, {"success", &P::success}},
        {{&P::panel}, {&P::panel, &P::card}});
    add(kText, {{"dangerText", &P::dangerText}}, {{&P::panel, &P::dangerSoft}});
    add(kText, {{"warningText", &P::warningText}}, {{&P::panel, &P::warningSoft}});
    add(kText, {{"successText", &P::successText}}, {{&P::panel, &P::successSoft}});
    add(kGraphic, {{"accent", &P::accent}, {"sliderFill", &P::sliderFill}}, {{&P::panel}, {&P::panel, &P::card}});
    add(kGraphic, {{"control", &P::control}}, {{&P::panel}, {&P::panel, &P::card}, {&P::panel, &P::rowHover}, {&P::popover}});
    add(kGraphic, {{"focusRing", &P::focusRing}},
        {{}, {&P::toolbar}, {&P::panel}, {&P::panel, &P::card}, {&P::panel, &P::rowSelected}, {&P::popover}});
    add(kGraphic,
        {{"waveOutside", &P::waveOutside},
         {"waveOutsideRms", &P::waveOutsideRms},
         {"handle", &P::handle},
         {"playhead", &P::playhead}},
        {{&P::panel, &P::card, &P::well}});
    add(kGraphic,
        {{"waveUnplayed", &P::waveUnplayed},
         {"waveUnplayedRms", &P::waveUnplayedRms},
         {"wavePlayedStart", &P::wavePlayedStart},
         {"wavePlayedEnd", &P::wavePlayedEnd}},
        {{&P::panel, &P::card, &P::well, &P::waveRange}});
    add(kGraphic, {{"handleGrip", &P::handleGrip}}, {{&P::handle}});
    add(kGraphic, {{"playhead on a wave", &P::playhead}}, {{&P::waveUnplayed}});
    add(kGraphic, {{"skimmer", &P::skimmer}, {"snapLine", &P::snapLine}, {"playhead", &P::playhead}}, {{&P::panel, &P::lane}});
    add(kGraphic, {{"meterLow", &P::meterLow}, {"meterMid", &P::meterMid}, {"meterHigh", &P::meterHigh}},
        {{&P::panel, &P::meterTrack}});
    return pairs;
}();

} // namespace

TEST(Contrast, IsThatOfTheStandard)
{
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(contrast(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01); // the lightest grey that passes on white
    EXPECT_EQ(contrast(Qt::red, Qt::red), 1);
}

TEST(Contrast, ReachesItsFloorInEveryThemeAndAppearance)
{
    forEachPalette([](const AppTheme&, const Palette& palette, bool isDark, const std::string& name) {
        for (const auto* pairs : {&kPairs, &kPalette}) {
            for (const Pair& pair : *pairs)
                EXPECT_GE(worstContrast(palette, pair, isDark), pair.floor) << name << pair.name << ", " << pair.surfaces.size();
        }
    });
}

TEST(Contrast, OfTheSwitchesThumb)
{
    forEachPalette([](const AppTheme&, const Palette& palette, bool isDark, const std::string& name) {
        const QColor thumb = isDark ? palette.accentText : palette.thumb;
        EXPECT_GE(contrast(thumb, palette.accent), kGraphic) << name << "on";
        EXPECT_GE(contrast(thumb, palette.control), kGraphic) << name << "off";
    });
}

// A swatch is known by its name and by the ring when it is chosen; its bar shows
// the accent of its theme, whichever theme the settings wear.
TEST(Contrast, OfEachSwatchsBarInItsEdge)
{
    forEachPalette([](const AppTheme&, const Palette& worn, bool isDark, const std::string& name) {
        const DesignTokens tokens = DesignTokens::builtIn();
        for (const AppTheme& shown : tokens.themes)
            EXPECT_GE(contrast((isDark ? shown.dark : shown.light).accent, worn.popover), kGraphic)
                << name << shown.id.toStdString();
    });
}

TEST(Contrast, OfWhatHasBeenPlayedAllAlong)
{
    forEachPalette([](const AppTheme&, const Palette& palette, bool, const std::string& name) {
        for (const double share : {0.25, 0.5, 0.75}) {
            const QColor wave = between(palette.wavePlayedStart, palette.wavePlayedEnd, share);
            EXPECT_GE(worstContrast(palette, wave, {palette.panel, palette.card, palette.well, palette.waveRange}), kGraphic)
                << name << share;
        }
    });
}

TEST(Contrast, OfEachTopicsIcon)
{
    constexpr int kTopics = 13;
    constexpr float kBadge = 0.16f; // opacity.topicBadge
    forEachPalette([](const AppTheme&, const Palette& palette, bool, const std::string& name) {
        for (int i = 0; i < kTopics; ++i) {
            const QColor icon = between(palette.topicStart, palette.topicEnd, double(i) / (kTopics - 1));
            QColor badge = icon;
            badge.setAlphaF(kBadge);
            EXPECT_GE(worstContrast(palette, icon, {palette.panel, palette.card, badge}), kGraphic) << name << i;
        }
    });
}

// The Studio's regions are no part of Palette yet: read from the file.
TEST(Contrast, OfEachRegion)
{
    QFile file(u":/design/tokens.json"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonObject themes = QJsonDocument::fromJson(file.readAll())[u"themes"_s].toObject();
    int count = 0;
    forEachPalette([&](const AppTheme& theme, const Palette& palette, bool isDark, const std::string& name) {
        const QJsonValue colors = themes[theme.id][isDark ? u"dark"_s : u"light"_s];
        for (const QJsonValue& region : colors[u"regions"_s].toArray()) {
            const auto color = [&region](const QString& key) { return colorFromText(region[key].toString()); };
            EXPECT_GE(contrast(color(u"text"_s), color(u"regionHeader"_s)), kText) << name;
            EXPECT_GE(contrast(color(u"wave"_s), color(u"region"_s)), kGraphic) << name;
            EXPECT_GE(contrast(color(u"mutedWave"_s), color(u"muted"_s)), kGraphic) << name;
            EXPECT_GE(contrast(palette.playhead, color(u"region"_s)), kGraphic) << name;
            EXPECT_GE(worstContrast(palette, color(u"edge"_s), {palette.panel, palette.lane}), kGraphic) << name;
            ++count;
        }
    });
    EXPECT_EQ(count, 6 * 2 * 6);
}
