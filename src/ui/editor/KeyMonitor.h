#pragma once

#include "ui/editor/SoundView.h"

#include <QQuickItem>

namespace tonequill {

// The keys and clicks of the window while the editor is on the screen, before
// anything else gets them: Space plays and stops wherever the focus is, except
// where one types or in a menu; Escape and a click elsewhere end typing.
class KeyMonitor : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tonequill::SoundView* sound MEMBER m_sound NOTIFY soundChanged FINAL REQUIRED)

public:
    explicit KeyMonitor(QQuickItem* parent = nullptr) : QQuickItem(parent) {}
    ~KeyMonitor() override;

Q_SIGNALS:
    void soundChanged();
    // Typing has ended: somebody else should have the keyboard.
    void editingEnded();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void watch(QQuickWindow* window);
    bool takeKey(const QKeyEvent& key);
    QQuickItem* textField() const; // that is typed in; null for none
    bool isInPopup() const;

    SoundView* m_sound = nullptr;
    QPointer<QQuickWindow> m_window;
};

} // namespace tonequill
