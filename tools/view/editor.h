// The reader's own editor, opened at a line of a file.
#pragma once

#include <QString>
#include <QStringList>

namespace zm::view {

/// The program and its arguments for an editor as ZENRO_EDITOR or VISUAL name it, options included. Editors of the
/// terminal get one. Empty where there is no editor.
QStringList EditorCommand(const QString& editor, const QString& file, int line);

/// Opens a file in the editor of ZENRO_EDITOR, else of VISUAL, else as the desktop does. False where nothing opens it.
bool OpenInEditor(const QString& file, int line);

}  // namespace zm::view
