// What the window remembers of the maps that it showed: how each is opened again, and where one looked last.
#pragma once

#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <optional>

#include "tools/view/viewport.h"

namespace zm::view {

struct RememberedMap {
    QStringList inputs, options;  // paths are whole
    QString plane;                // that the view is of
    std::optional<Viewport> view;
};

/// A map as it is opened from any folder: paths whole, and without the options that say what is shown first.
RememberedMap MapOf(const QStringList& inputs, const QStringList& options);
/// True where the options say themselves what is shown first.
bool NamesPlace(const QStringList& options);
/// The maps that are remembered, the newest first; at most 30.
QList<RememberedMap> RememberedMaps();
/// A drawing or a recording, by the end of its name: it is shown alone and needs no rules.
bool IsDrawing(const QString& input);
bool IsDrawn(const QString& input);
/// Puts a map first. One of the same inputs is replaced.
void RememberMap(const RememberedMap& map);
/// Where one looked last at these inputs, if that is still of this plane and meets the data.
std::optional<Viewport> LastView(const QStringList& inputs, const QString& plane, const QRectF& data, QSizeF size);

}  // namespace zm::view
