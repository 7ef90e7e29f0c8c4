#pragma once

#include <QString>

#include <exception>

namespace tonequill {

// A failure that carries the sentence the user is shown. Subsystems derive
// their own types from it (ImportError, FileError, …), throw them where the
// failure happens, and flows catch them once, at their top.
class UserError : public std::exception {
public:
    explicit UserError(QString message);

    // The sentence as the user sees it, complete with its full stop.
    const QString& message() const noexcept { return m_message; }

    // The same sentence in UTF-8.
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_message;
    QByteArray m_utf8;
};

// The sentence for any exception: a UserError's own, and one plain sentence for
// running out of memory or a failure that has no words of its own.
QString messageOf(const std::exception& error);

} // namespace tonequill
