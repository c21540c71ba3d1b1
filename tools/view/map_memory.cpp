#include "tools/view/map_memory.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <algorithm>
#include <cmath>

namespace zm::view {
namespace {

constexpr int kMostMaps = 30;
constexpr char kKey[] = "view/maps";

// FILE and FILE:LAYER; what is no file, as a database, stays as it is.
QString WholePath(const QString& text) {
    if (QFileInfo::exists(text)) return QFileInfo(text).absoluteFilePath();
    const QString file = text.section(':', 0, -2);
    if (file.isEmpty() || !QFileInfo::exists(file)) return text;
    return QFileInfo(file).absoluteFilePath() + ":" + text.section(':', -1);
}

QStringList WholePaths(const QStringList& inputs) {
    QStringList whole;
    for (const QString& input : inputs) whole << WholePath(input);
    return whole;
}

bool IsOfPlace(const QString& option) {
    return option.startsWith("--sheet=") || option.startsWith("--number=") || option.startsWith("--rotate=");
}

QJsonObject AsJson(const RememberedMap& map) {
    QJsonObject json{{"inputs", QJsonArray::fromStringList(map.inputs)},
                     {"options", QJsonArray::fromStringList(map.options)},
                     {"plane", map.plane}};
    if (map.view) json["view"] = QJsonArray{map.view->x, map.view->y, map.view->pixel, map.view->rotation};
    return json;
}

RememberedMap FromJson(const QJsonObject& json) {
    RememberedMap map{json["inputs"].toVariant().toStringList(), json["options"].toVariant().toStringList(),
                      json["plane"].toString(), std::nullopt};
    const QJsonArray view = json["view"].toArray();
    if (view.size() != 4 || !(view[2].toDouble() > 0.0)) return map;
    map.view = Viewport{view[0].toDouble(), view[1].toDouble(), view[2].toDouble(), view[3].toDouble(), {1.0, 1.0}};
    return map;
}

}  // namespace

RememberedMap MapOf(const QStringList& inputs, const QStringList& options) {
    RememberedMap map{WholePaths(inputs), {}, {}, std::nullopt};
    for (const QString& option : options) {
        if (IsOfPlace(option)) continue;
        const QString value = option.section('=', 1);
        map.options << (option.contains('=') ? option.section('=', 0, 0) + "=" + WholePath(value) : option);
    }
    return map;
}

bool IsDrawing(const QString& input) {
    return input.endsWith(".dwg", Qt::CaseInsensitive);
}

bool IsDrawn(const QString& input) {
    return IsDrawing(input) || input.endsWith(".rec", Qt::CaseInsensitive);
}

bool NamesPlace(const QStringList& options) {
    return std::any_of(options.begin(), options.end(), IsOfPlace);
}

QList<RememberedMap> RememberedMaps() {
    QList<RememberedMap> maps;
    for (const QJsonValue one : QJsonDocument::fromJson(QSettings().value(kKey).toByteArray()).array())
        if (maps.size() < kMostMaps && !one.toObject()["inputs"].toArray().isEmpty()) maps << FromJson(one.toObject());
    return maps;
}

void RememberMap(const RememberedMap& map) {
    QJsonArray maps{AsJson(map)};
    for (const RememberedMap& other : RememberedMaps())
        if (other.inputs != map.inputs && maps.size() < kMostMaps) maps.append(AsJson(other));
    QSettings().setValue(kKey, QJsonDocument(maps).toJson(QJsonDocument::Compact));
}

std::optional<Viewport> LastView(const QStringList& inputs, const QString& plane, const QRectF& data, QSizeF size) {
    const QStringList whole = WholePaths(inputs);
    for (const RememberedMap& map : RememberedMaps()) {
        if (map.inputs != whole || map.plane != plane || !map.view) continue;
        Viewport view = *map.view;
        view.size = size;
        const double reach = std::hypot(size.width(), size.height()) / 2 * view.pixel;
        if (data.adjusted(-reach, -reach, reach, reach).contains(QPointF(view.x, view.y))) return view;
    }
    return std::nullopt;
}

}  // namespace zm::view
