#pragma once

#include "ui/library/LibraryFiles.h"

#include <QQuickItem>

namespace tonequill {

// Takes files that are dropped anywhere on it, except on a field that one types in.
// It lies over its parent, whose other children have the fields. One thread.
class DropGround : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tonequill::LibraryFiles* files MEMBER m_files NOTIFY filesChanged FINAL REQUIRED)
    // Something is over it that it would take, and that comes from elsewhere.
    Q_PROPERTY(bool isInviting READ isInviting NOTIFY isInvitingChanged FINAL)

public:
    explicit DropGround(QQuickItem* parent = nullptr);

    bool isInviting() const { return m_isInviting; }

Q_SIGNALS:
    void filesChanged();
    void isInvitingChanged();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override { look(event); }
    void dragMoveEvent(QDragMoveEvent* event) override { look(event); }
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool wants(const QDropEvent& event) const;
    void look(QDropEvent* event);
    void setInviting(bool isInviting);

    LibraryFiles* m_files = nullptr;
    bool m_isInviting = false;
};

} // namespace tonequill
