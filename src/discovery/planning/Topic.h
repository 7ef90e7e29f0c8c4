#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace tonequill {

// A theme to browse, identified by its title.
struct Topic {
    QString title;
    QString symbol; // the name of its picture
    QStringList terms;
    bool anyLength = false; // long sounds are welcome

    bool operator==(const Topic&) const = default;

    // resources/planning/topics.txt, in the order in which they are shown. Any thread.
    static const QList<Topic>& all();
};

// Over all fields, as equality is.
size_t qHash(const Topic& topic, size_t seed = 0);

} // namespace tonequill
