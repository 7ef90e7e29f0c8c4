#pragma once

#include "editor/EditorModel.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace tonequill {

// What the chip of a part says. Pure.
namespace PartChip {

// "Best match · Slam": which proposal it is, `index` from 0, and what was heard.
QString title(const CutCandidate& candidate, int index);
QString bareTitle(const CutCandidate& candidate, int index); // without what was heard

} // namespace PartChip

// The parts that were found in the open sound, best first. One thread.
class PartsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the open sound")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum Role {
        TitleRole = Qt::DisplayRole,
        BareTitleRole = Qt::UserRole,
        LengthRole,
        MarkedRole,
        BestRole,
        WholeRole,
        StartRole,
        EndRole
    };
    Q_ENUM(Role)

    explicit PartsModel(EditorModel& editor);

    int count() const { return int(m_shown.size()); }
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count(); }
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // A click on a chip; with Control it extends or takes away.
    Q_INVOKABLE void choose(int row, int modifiers);

Q_SIGNALS:
    void countChanged();

private:
    void follow();

    EditorModel& m_editor;
    std::vector<CutCandidate> m_shown;
};

} // namespace tonequill
