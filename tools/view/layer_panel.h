// The layers and rules of the map, each with its number of features, shown or not.
#pragma once

#include <QJsonArray>
#include <QTreeWidget>

namespace zm::view {

class LayerPanel : public QTreeWidget {
    Q_OBJECT
 public:
    explicit LayerPanel(QWidget* owner = nullptr);
    /// Takes up the layers of a map. What was not shown before is not shown now, by name.
    void SetLayers(const QJsonArray& layers);
    /// The places of the layers that are not shown, and of the rules.
    QJsonArray HiddenLayers() const;
    QJsonArray HiddenRules() const;
    QStringList HiddenLayerNames() const;
    /// Shows this item alone: a layer with its rules, or a rule in its layer.
    void ShowOnly(QTreeWidgetItem* item);
    void ShowAll();

 signals:
    void Changed();

 private:
    void ShowMenu(QPoint at);
    void SetAll(Qt::CheckState state);
    QStringList HiddenNames() const;
};

}  // namespace zm::view
