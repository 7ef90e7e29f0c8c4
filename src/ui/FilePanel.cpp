#include "ui/FilePanel.h"

#include <QFileDialog>
#include <QStandardPaths>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace tonequill {

FilePanel::FilePanel(std::function<void(const QStringList&)> chosen)
    : m_chosen(std::move(chosen)),
      m_folder(QStandardPaths::writableLocation(QStandardPaths::HomeLocation))
{}

FilePanel::~FilePanel()
{
    delete m_dialog;
}

void FilePanel::open(QWindow* over)
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
        return;
    }
    m_dialog = new QFileDialog(nullptr, u"Add Files"_s, m_folder);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setOption(QFileDialog::HideNameFilterDetails);
    m_dialog->setFileMode(QFileDialog::ExistingFiles);
    m_dialog->setLabelText(QFileDialog::Accept, u"Add"_s);
    m_dialog->setNameFilters({u"Sounds and videos (*.wav *.mp3 *.m4a *.aac *.aif *.aiff *.caf *.flac *.ogg *.opus *.wma "
                              "*.mp4 *.mov *.m4v *.mkv *.webm *.avi)"_s,
                              u"All files (*)"_s});
    connect(m_dialog, &QFileDialog::filesSelected, this, [this](const QStringList& paths) {
        m_folder = m_dialog->directory().absolutePath();
        m_chosen(paths);
    });
    m_dialog->winId(); // makes the window that gets its parent
    m_dialog->windowHandle()->setTransientParent(over);
    m_dialog->setWindowModality(Qt::WindowModal);
    m_dialog->open();
}

} // namespace tonequill
