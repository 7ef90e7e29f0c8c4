// A window from which files can be dragged into another program, as from a file
// manager: press anywhere in it and move.
//
//     drag_source FILE…

#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

class DragSource final : public QWidget {
public:
    explicit DragSource(QList<QUrl> urls) : m_urls(std::move(urls))
    {
        setWindowTitle(u"Drag Source"_s);
        resize(200, 120);
    }

private:
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!(event->buttons() & Qt::LeftButton))
            return;
        auto* files = new QMimeData; // the drag owns it
        files->setUrls(m_urls);
        auto* drag = new QDrag(this);
        drag->setMimeData(files);
        drag->exec(Qt::CopyAction);
    }

    QList<QUrl> m_urls;
};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QList<QUrl> urls;
    for (const QString& file : QApplication::arguments().sliced(1))
        urls << QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath());
    DragSource source(urls);
    source.show();
    return QApplication::exec();
}
