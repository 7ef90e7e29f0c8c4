#pragma once

#include "editor/EditorModel.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace tonequill {

// The voices to choose from. One thread.
class VoicesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the effects")
    Q_PROPERTY(QString hint READ hint NOTIFY chosenChanged FINAL)

public:
    enum Role { LabelRole = Qt::DisplayRole, IconRole = Qt::UserRole, HintRole, CurrentRole };
    Q_ENUM(Role)

    explicit VoicesModel(EditorModel& editor);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString hint() const { return hintOf(m_editor.effects().voice); } // of the one that is chosen
    Q_INVOKABLE void choose(int row);

Q_SIGNALS:
    void chosenChanged();

private:
    void follow();

    EditorModel& m_editor;
    VoiceStyle m_shown;
};

} // namespace tonequill
