#include "tools/view/layer_panel.h"

#include <QHeaderView>
#include <QJsonObject>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QSignalBlocker>
#include <set>

#include "tools/view/phrases.h"

namespace zm::view {
namespace {

constexpr int kIndex = Qt::UserRole, kName = Qt::UserRole + 1;
constexpr double kPixelsPerMillimetre = 4.0;  // of the strokes in the list

// A stroke in the colour and about the width that the layer has on paper.
QIcon StrokeIcon(const QColor& colour, double millimetres) {
    QPixmap icon(28, 14);
    icon.fill(Qt::white);
    QPainter painter(&icon);
    painter.setPen(QPen(colour, std::max(1.0, millimetres * kPixelsPerMillimetre)));
    painter.drawLine(2, 7, 26, 7);
    return icon;
}

QColor ColourOf(const QJsonObject& what) {
    const QJsonArray colour = what["colour"].toArray();
    return {colour[0].toInt(), colour[1].toInt(), colour[2].toInt()};
}

// "town.gpkg: roads" is "roads" where the file is said elsewhere.
QString ShortName(const QString& name) {
    return name.section(": ", -1);
}

}  // namespace

LayerPanel::LayerPanel(QWidget* owner) : QTreeWidget(owner) {
    setObjectName("layers");
    setColumnCount(2);
    setHeaderLabels({Say("Name"), Say("Number")});
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    setIconSize(QSize(28, 14));
    setUniformRowHeights(true);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &LayerPanel::ShowMenu);
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem*, int column) {
        if (column == 0) emit Changed();
    });
}

QStringList LayerPanel::HiddenNames() const {
    QStringList names;
    for (int i = 0; i < topLevelItemCount(); ++i) {
        const QTreeWidgetItem* layer = topLevelItem(i);
        if (layer->checkState(0) == Qt::Unchecked) names << layer->data(0, kName).toString();
        for (int k = 0; k < layer->childCount(); ++k)
            if (layer->child(k)->checkState(0) == Qt::Unchecked) names << layer->child(k)->data(0, kName).toString();
    }
    return names;
}

void LayerPanel::SetLayers(const QJsonArray& layers) {
    const QSignalBlocker quiet(this);
    const QStringList hidden = HiddenNames();
    QStringList open;
    for (int i = 0; i < topLevelItemCount(); ++i)
        if (topLevelItem(i)->isExpanded()) open << topLevelItem(i)->data(0, kName).toString();
    clear();
    const auto check = [&](QTreeWidgetItem* item, const QString& name) {
        item->setData(0, kName, name);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(0, hidden.contains(name) ? Qt::Unchecked : Qt::Checked);
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    };
    const QLocale locale;
    for (const QJsonValue value : layers) {
        const QJsonObject layer = value.toObject();
        const QString name = layer["name"].toString();
        auto* item = new QTreeWidgetItem(this, {ShortName(name), locale.toString(layer["count"].toInt())});
        item->setToolTip(0, name);
        item->setData(0, kIndex, layer["index"].toInt());
        check(item, name);
        if (layer.contains("colour")) item->setIcon(0, StrokeIcon(ColourOf(layer), layer["width"].toDouble()));
        for (const QJsonValue one : layer["rules"].toArray()) {
            const QJsonObject rule = one.toObject();
            const QString note = rule["note"].toString();
            const QString title = QString::number(rule["code"].toInt()) + (note.isEmpty() ? "" : " " + note);
            auto* child = new QTreeWidgetItem(item, {title, locale.toString(rule["count"].toInt())});
            child->setIcon(0, StrokeIcon(ColourOf(rule), rule["width"].toDouble()));
            child->setToolTip(0, rule["condition"].toString() + "\n" + title + "\n" +
                                     QString::number(rule["width"].toDouble()) + " mm");
            child->setData(0, kIndex, rule["index"].toInt());
            check(child, name + "\n" + rule["condition"].toString() + "\n" + title);
        }
        item->setExpanded(open.contains(name));
    }
}

QJsonArray LayerPanel::HiddenLayers() const {
    QJsonArray hidden;
    for (int i = 0; i < topLevelItemCount(); ++i)
        if (topLevelItem(i)->checkState(0) == Qt::Unchecked) hidden.append(topLevelItem(i)->data(0, kIndex).toInt());
    return hidden;
}

QStringList LayerPanel::HiddenLayerNames() const {
    QStringList names;
    for (int i = 0; i < topLevelItemCount(); ++i)
        if (topLevelItem(i)->checkState(0) == Qt::Unchecked) names << topLevelItem(i)->data(0, kName).toString();
    return names;
}

// A rule that draws in several layers is hidden where each of its rows is unchecked.
QJsonArray LayerPanel::HiddenRules() const {
    std::set<int> hidden, shown;
    for (int i = 0; i < topLevelItemCount(); ++i)
        for (int k = 0; k < topLevelItem(i)->childCount(); ++k) {
            const QTreeWidgetItem* rule = topLevelItem(i)->child(k);
            (rule->checkState(0) == Qt::Unchecked ? hidden : shown).insert(rule->data(0, kIndex).toInt());
        }
    QJsonArray places;
    for (const int rule : hidden)
        if (shown.count(rule) == 0) places.append(rule);
    return places;
}

void LayerPanel::SetAll(Qt::CheckState state) {
    for (int i = 0; i < topLevelItemCount(); ++i) {
        topLevelItem(i)->setCheckState(0, state);
        for (int k = 0; k < topLevelItem(i)->childCount(); ++k) topLevelItem(i)->child(k)->setCheckState(0, state);
    }
}

void LayerPanel::ShowOnly(QTreeWidgetItem* item) {
    {
        const QSignalBlocker quiet(this);
        SetAll(Qt::Unchecked);
        item->setCheckState(0, Qt::Checked);
        if (item->parent() != nullptr) item->parent()->setCheckState(0, Qt::Checked);
        for (int i = 0; i < item->childCount(); ++i) item->child(i)->setCheckState(0, Qt::Checked);
    }
    viewport()->update();
    emit Changed();
}

void LayerPanel::ShowAll() {
    {
        const QSignalBlocker quiet(this);
        SetAll(Qt::Checked);
    }
    viewport()->update();
    emit Changed();
}

void LayerPanel::ShowMenu(QPoint at) {
    QMenu menu;
    QTreeWidgetItem* item = itemAt(at);
    QAction* only = menu.addAction(Say("Only this one"));
    only->setEnabled(item != nullptr);
    QAction* all = menu.addAction(Say("Show all"));
    const QAction* taken = menu.exec(viewport()->mapToGlobal(at));
    if (taken == only) ShowOnly(item);
    if (taken == all) ShowAll();
}

}  // namespace zm::view
