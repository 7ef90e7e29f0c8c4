#pragma once

#include "ui/kit/ThemeStore.h"

#include <QAbstractListModel>

namespace tonequill {

// The themes to choose from, as they look in the appearance of now. One thread.
class ThemesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the settings")
    Q_PROPERTY(int current READ current NOTIFY currentChanged FINAL)

public:
    enum Role { NameRole = Qt::DisplayRole, StartRole = Qt::UserRole, EndRole, AccentRole, CurrentRole };
    Q_ENUM(Role)

    // `store` outlives it.
    explicit ThemesModel(ThemeStore& store);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // The row of the theme that is on show; an unknown one looks like the first.
    int current() const { return m_current; }
    Q_INVOKABLE void choose(int row);

Q_SIGNALS:
    void currentChanged();

private:
    int lookUpCurrent() const;
    void follow();

    ThemeStore& m_store;
    int m_current;
};

} // namespace tonequill
