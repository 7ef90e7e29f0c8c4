// A window that files can be dropped on, as another editing program's: it prints
// the formats of each drop and then the paths, a line each.
//
//     drop_target

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

class DropTarget final : public QWidget {
public:
    DropTarget()
    {
        setWindowTitle(u"Drop Target"_s);
        setAcceptDrops(true);
        resize(200, 120);
    }

private:
    void dragEnterEvent(QDragEnterEvent* event) override
    {
        if (event->mimeData()->hasUrls() && event->possibleActions() & Qt::CopyAction) {
            event->setDropAction(Qt::CopyAction);
            event->accept();
        }
    }
    void dropEvent(QDropEvent* event) override
    {
        std::printf("formats %s\n", qPrintable(event->mimeData()->formats().join(u' ')));
        for (const QUrl& url : event->mimeData()->urls())
            std::printf("file %s\n", qPrintable(url.toLocalFile()));
        std::fflush(stdout);
        event->acceptProposedAction();
    }
};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    DropTarget target;
    target.show();
    return QApplication::exec();
}
