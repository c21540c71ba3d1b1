// What a window is opened for.
#pragma once

#include <QString>
#include <QStringList>

namespace zm::view {

/// What a window shows, with the options for the process that works for it, and where it writes.
struct ViewJob {
    QString program;
    QStringList inputs, options;
    QString picture, log;
};

}  // namespace zm::view
