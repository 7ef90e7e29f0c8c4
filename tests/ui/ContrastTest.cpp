// Text must reach 4.5:1 and graphics 3:1 (WCAG 2.1, success criteria 1.4.3 and
// 1.4.11) in every theme and appearance. Translucent surfaces are laid over the
// window's gradient at its three stops, and the worst result counts.

#include "ui/DesignTokens.h"

#include <QHash>

#include <gtest/gtest.h>

using namespace tonequill;

namespace {

constexpr double kText = 4.5;
constexpr double kGraphic = 3.0;

using ColorOf = QColor Palette::*;

struct Pair {
    const char* name;
    double floor;
    ColorOf ink;
    std::vector<ColorOf> surfaces; // from the window's ground upwards
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

double worstContrast(const Palette& palette, const Pair& pair)
{
    double worst = 21;
    for (const auto& [at, stop] : palette.windowStops) {
        QColor ground = over(stop, palette.windowBase);
        for (const ColorOf surface : pair.surfaces)
            ground = over(palette.*surface, ground);
        worst = std::min(worst, contrast(over(palette.*pair.ink, ground), ground));
    }
    return worst;
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
};

} // namespace

TEST(Contrast, IsThatOfTheStandard)
{
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(contrast(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01); // the lightest grey that passes on white
    EXPECT_EQ(contrast(Qt::red, Qt::red), 1);
}

TEST(Contrast, ReachesItsFloorInEveryThemeAndAppearance)
{
    for (const AppTheme& theme : DesignTokens::builtIn().themes) {
        for (const Palette* palette : {&theme.light, &theme.dark}) {
            for (const Pair& pair : kPairs) {
                EXPECT_GE(worstContrast(*palette, pair), pair.floor)
                    << theme.id.toStdString() << (palette == &theme.dark ? " dark: " : " light: ") << pair.name;
            }
        }
    }
}
