#include "ui/kit/DragOut.h"

#include "ui/kit/ThemeStore.h"

#include <QDrag>
#include <QFontMetricsF>
#include <QPainter>
#include <QQuickItem>
#include <QQuickWindow>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr int kLongestLabel = 240; // pixels; a longer one is cut
const QPoint kHotSpot(-12, -8);    // the picture hangs beside the pointer, which stays free

} // namespace

std::unique_ptr<QMimeData> DragOut::filesOf(const QStringList& paths)
{
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls << QUrl::fromLocalFile(path);
    auto files = std::make_unique<QMimeData>();
    files->setUrls(urls);
    return files;
}

QPixmap DragOut::picture(const QString& label, qsizetype count, double scale)
{
    ThemeStore& themes = ThemeStore::shared();
    const Palette& colors = themes.theme().palette();
    const Metrics& metrics = themes.metrics();
    const QFont font = metrics.bodyFont();
    const QFontMetricsF measure(font);
    QString text = measure.elidedText(label, Qt::ElideRight, kLongestLabel);
    if (count > 1)
        text += u"  +%1"_s.arg(count - 1);
    const QSizeF size(std::ceil(measure.horizontalAdvance(text)) + 2 * metrics.spaceM(), metrics.chip());
    QPixmap picture((size * scale).toSize());
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colors.border);
    painter.setBrush(colors.popover);
    painter.drawRoundedRect(QRectF(QPointF(0.5, 0.5), size - QSizeF(1, 1)), metrics.radiusChip(), metrics.radiusChip());
    painter.setPen(colors.textPrimary);
    painter.setFont(font);
    painter.drawText(QRectF(QPointF(), size), Qt::AlignCenter, text);
    return picture;
}

void DragOut::start(QObject* source, const QStringList& paths, const QString& label, double scale)
{
    if (paths.isEmpty())
        return;
    auto* drag = new QDrag(source); // goes by itself
    drag->setMimeData(filesOf(paths).release());
    drag->setPixmap(picture(label, paths.size(), scale));
    drag->setHotSpot(kHotSpot);
    drag->exec(Qt::CopyAction);
}

void DragOut::startLater(QQuickItem* from, const QStringList& paths, const QString& label)
{
    QMetaObject::invokeMethod(
        from, [from, paths, label] { start(from, paths, label, from->window()->effectiveDevicePixelRatio()); },
        Qt::QueuedConnection);
}

} // namespace tonequill
