#include "base/UserError.h"

#include <new>

namespace tonequill {

UserError::UserError(QString message) : m_message(std::move(message)), m_utf8(m_message.toUtf8())
{}

QString messageOf(const std::exception& error)
{
    if (const auto* known = dynamic_cast<const UserError*>(&error))
        return known->message();
    if (dynamic_cast<const std::bad_alloc*>(&error))
        return QStringLiteral("There is not enough memory for this.");
    return QStringLiteral("Something went wrong: %1").arg(QString::fromUtf8(error.what()));
}

} // namespace tonequill
