#include "ui/FolderPanel.h"

#include <QFileDialog>
#include <QWindow>

namespace tonequill {

FolderPanel::FolderPanel(QString title, QString button, std::function<void(const QString&)> chosen)
    : m_title(std::move(title)),
      m_button(std::move(button)),
      m_chosen(std::move(chosen))
{}

FolderPanel::~FolderPanel()
{
    delete m_dialog;
}

void FolderPanel::open(QWindow* over, const QString& folder)
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
        return;
    }
    m_dialog = new QFileDialog(nullptr, m_title, folder);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setFileMode(QFileDialog::Directory);
    m_dialog->setOption(QFileDialog::ShowDirsOnly);
    m_dialog->setLabelText(QFileDialog::Accept, m_button);
    connect(m_dialog, &QFileDialog::fileSelected, this, m_chosen);
    m_dialog->winId(); // makes the window that gets its parent
    m_dialog->windowHandle()->setTransientParent(over);
    m_dialog->setWindowModality(Qt::WindowModal);
    m_dialog->open();
}

} // namespace tonequill
