#include "ui/window/WindowPlace.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

const QString kMaximized = u" maximized"_s;
constexpr int kTitle = 48; // of the window's upper edge must be on a screen, each way

} // namespace

QString WindowPlace::text() const
{
    const QString size = u"%1x%2"_s.arg(frame.width()).arg(frame.height());
    const QString place = QString::asprintf("%+d%+d", frame.x(), frame.y());
    return size + place + (isMaximized ? kMaximized : QString());
}

std::optional<WindowPlace> WindowPlace::fromText(const QString& text)
{
    // Five digits: no screen is larger, and no number overflows.
    static const QRegularExpression kForm(u"\\A(\\d{1,5})x(\\d{1,5})([+-]\\d{1,5})([+-]\\d{1,5})( maximized)?\\z"_s);
    const QRegularExpressionMatch match = kForm.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const auto number = [&match](int group) { return match.captured(group).toInt(); };
    return WindowPlace{QRect(number(3), number(4), number(1), number(2)), match.hasCaptured(5)};
}

WindowPlace WindowPlace::fitted(const QList<QRect>& screens, const QSize& least) const
{
    const QRect title(frame.topLeft(), QSize(std::max(frame.width(), kTitle), kTitle));
    const auto shown = std::find_if(screens.begin(), screens.end(), [&title](const QRect& screen) {
        const QRect seen = screen & title;
        return seen.width() >= kTitle && seen.height() >= kTitle;
    });
    const QRect& screen = shown == screens.end() ? screens.first() : *shown;
    WindowPlace place = *this;
    place.frame.setSize(frame.size().boundedTo(screen.size()).expandedTo(least));
    if (shown == screens.end())
        place.frame.moveCenter(screen.center());
    return place;
}

} // namespace tonequill
