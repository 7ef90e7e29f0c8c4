#include "understanding/listening/SoundEventModel.h"

#include "understanding/listening/ClassMap.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <stdexcept>

static void loadClassifierResources()
{
    Q_INIT_RESOURCE(classifier); // a static library's resources are taken in by hand
}

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

// The largest networks of this kind have 15 MB; nothing near this is one.
constexpr qint64 kLargestFile = qint64(128) << 20;

double follow(const SoundEventModel::Curve& curve, double score)
{
    const auto above = std::find_if(curve.begin(), curve.end(), [&](const auto& point) { return point.first > score; });
    if (above == curve.begin())
        return curve.front().second;
    if (above == curve.end())
        return curve.back().second;
    const auto& below = *(above - 1);
    const double share = (score - below.first) / (above->first - below.first);
    return below.second + share * (above->second - below.second);
}

[[noreturn]] void refuse(const QString& path, const QString& reason)
{
    throw SoundModelError(u"The sound classifier “%1” can't be used: %2."_s.arg(QFileInfo(path).fileName(), reason));
}

QByteArray readWhole(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        refuse(path, u"it can't be opened"_s);
    if (file.size() > kLargestFile)
        refuse(path, u"it is too large"_s);
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        refuse(path, u"it can't be read"_s);
    return bytes;
}

QString classMapBeside(const QString& networkPath)
{
    const QDir folder = QFileInfo(networkPath).dir();
    const QStringList maps = folder.entryList({u"*class_map.csv"_s}, QDir::Files);
    if (maps.size() != 1)
        refuse(networkPath, u"its class map is not beside it"_s);
    return folder.filePath(maps.first());
}

QByteArray resource(const QString& name)
{
    QFile file(u":/classifier/"_s + name);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("The program was built without its sound classifier.");
    return file.readAll();
}

} // namespace

std::shared_ptr<const SoundEventModel> SoundEventModel::builtIn()
{
    loadClassifierResources();
    const QJsonObject about = QJsonDocument::fromJson(resource(u"classifier.json"_s)).object();
    QStringList labels;
    const QJsonArray names = about[u"labels"_s].toArray();
    for (const QJsonValue& name : names)
        labels << name.toString();
    Curve curve;
    const QJsonArray points = about[u"confidence"_s].toArray();
    for (const QJsonValue& point : points)
        curve.emplace_back(point[0].toDouble(), point[1].toDouble());
    return std::make_shared<SoundEventModel>(resource(u"network.onnx"_s), labels, curve);
}

std::shared_ptr<const SoundEventModel> SoundEventModel::fromFile(const QString& networkPath, const QString& classMapPath)
{
    const QByteArray onnx = readWhole(networkPath);
    const QString mapPath = classMapPath.isEmpty() ? classMapBeside(networkPath) : classMapPath;
    QStringList labels;
    try {
        labels = ClassMap::read(readWhole(mapPath));
    } catch (const std::runtime_error& error) {
        refuse(mapPath, QString::fromUtf8(error.what()));
    }
    try {
        return std::make_shared<SoundEventModel>(onnx, labels);
    } catch (const std::runtime_error& error) {
        refuse(networkPath, QString::fromUtf8(error.what()));
    }
}

SoundEventModel::SoundEventModel(QByteArray onnx, QStringList labels, Curve curve)
    : m_onnx(std::move(onnx)),
      m_labels(std::move(labels)),
      m_curve(std::move(curve))
{
    auto first = std::make_unique<EventNetwork>(m_onnx);
    if (first->outputCount() != m_labels.size())
        throw std::runtime_error(
            u"it has %1 scores for %2 labels"_s.arg(first->outputCount()).arg(m_labels.size()).toStdString());
    if (m_curve.empty())
        throw std::runtime_error("it has no confidences");
    m_idle.push_back(std::move(first));
}

std::unique_ptr<EventNetwork> SoundEventModel::borrow() const
{
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_idle.empty()) {
            auto network = std::move(m_idle.back());
            m_idle.pop_back();
            return network;
        }
    }
    return std::make_unique<EventNetwork>(m_onnx);
}

void SoundEventModel::giveBack(std::unique_ptr<EventNetwork> network) const
{
    const std::scoped_lock lock(m_mutex);
    m_idle.push_back(std::move(network));
}

std::vector<double> SoundEventModel::confidences(std::span<const float> patch) const
{
    auto network = borrow();
    const std::vector<float> scores = network->scores(patch);
    giveBack(std::move(network));
    std::vector<double> confidences(scores.size());
    std::transform(scores.begin(), scores.end(), confidences.begin(),
                   [&](float score) { return follow(m_curve, static_cast<double>(score)); });
    return confidences;
}

} // namespace tonequill
