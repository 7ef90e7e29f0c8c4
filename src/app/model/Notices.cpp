#include "app/model/Notices.h"

#include "base/Text.h"

using namespace std::chrono_literals;

namespace tonequill {

void Notices::say(const QString& text, Tone tone)
{
    set(Notice{QUuid::createUuid(), text::shownPart(text), tone == Tone::error});
    m_clock.after(tone == Tone::error ? 7000ms : 3500ms, [this, ticket = m_shown.begin()] {
        if (ticket.isCurrent()) // and so this object is there
            set({});
    });
}

void Notices::set(std::optional<Notice> notice)
{
    m_notice = std::move(notice);
    Q_EMIT changed();
}

} // namespace tonequill
