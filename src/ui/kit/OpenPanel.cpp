#include "ui/kit/OpenPanel.h"

#include <QDir>
#include <QFileDialog>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace tonequill {

OpenPanel::OpenPanel(Wanted wanted, QString title, QString button, std::function<void(const QStringList&)> chosen)
    : m_wanted(wanted),
      m_title(std::move(title)),
      m_button(std::move(button)),
      m_chosen(std::move(chosen)),
      m_lastFolder(QDir::homePath())
{}

OpenPanel::~OpenPanel()
{
    delete m_dialog;
}

void OpenPanel::open(QWindow* over, const QString& folder)
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
        return;
    }
    m_dialog = new QFileDialog(nullptr, m_title, folder.isEmpty() ? m_lastFolder : folder);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setLabelText(QFileDialog::Accept, m_button);
    if (m_wanted == Wanted::folder) {
        m_dialog->setFileMode(QFileDialog::Directory);
        m_dialog->setOption(QFileDialog::ShowDirsOnly);
    } else {
        m_dialog->setFileMode(QFileDialog::ExistingFiles);
        m_dialog->setOption(QFileDialog::HideNameFilterDetails);
        m_dialog->setNameFilters({u"Sounds and videos (*.wav *.mp3 *.m4a *.aac *.aif *.aiff *.caf *.flac *.ogg *.opus *.wma "
                                  "*.mp4 *.mov *.m4v *.mkv *.webm *.avi)"_s,
                                  u"All files (*)"_s});
    }
    connect(m_dialog, &QFileDialog::filesSelected, this, [this](const QStringList& paths) {
        m_lastFolder = m_dialog->directory().absolutePath();
        m_chosen(paths);
    });
    m_dialog->winId(); // makes the window that gets its parent
    m_dialog->windowHandle()->setTransientParent(over);
    m_dialog->setWindowModality(Qt::WindowModal);
    m_dialog->open();
}

} // namespace tonequill
