// A window that takes drops, as a video editor would, and prints what it got:
// the formats and the proposed action, then the path and the size of each file.

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
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
    void dragEnterEvent(QDragEnterEvent* event) override { event->acceptProposedAction(); }

    void dropEvent(QDropEvent* event) override
    {
        const QMimeData& files = *event->mimeData();
        std::printf("%s %s\n", event->possibleActions() == Qt::CopyAction ? "copy" : "other",
                    qPrintable(files.formats().join(u' ')));
        for (const QUrl& url : files.urls())
            std::printf("%lld %s\n", QFileInfo(url.toLocalFile()).size(), qPrintable(url.toLocalFile()));
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
