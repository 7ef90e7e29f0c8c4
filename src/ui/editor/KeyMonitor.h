#pragma once

#include "ui/editor/SoundView.h"

#include <QQuickItem>

namespace tonequill {

// The keys and clicks of the window while the editor is on the screen, before
// anything else gets them: Space plays and stops wherever the focus is, except
// where one types or in a menu; so do L, [ and ] loop and put an end of the range
// here, but in the list letters find names. A click elsewhere ends typing.
class KeyMonitor : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tonequill::SoundView* sound MEMBER m_sound NOTIFY soundChanged FINAL REQUIRED)
    Q_PROPERTY(QQuickItem* list MEMBER m_list NOTIFY soundChanged FINAL) // where letters find names

public:
    explicit KeyMonitor(QQuickItem* parent = nullptr) : QQuickItem(parent) {}
    ~KeyMonitor() override;

    // What is being typed is kept, as by a click elsewhere.
    Q_INVOKABLE void endEditing();

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
    bool takeLetter(const QKeyEvent& key);

    SoundView* m_sound = nullptr;
    QPointer<QQuickItem> m_list;
    QPointer<QQuickWindow> m_window;
};

} // namespace tonequill
