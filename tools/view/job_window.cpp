#include "tools/view/job_window.h"

#include <QPixmap>
#include <QTimer>
#include <utility>

namespace zm::view {

void JobWindow::End(int status, const QString& reason) {
    m_status = status;
    m_reason = status != 0 ? reason : QString();
    QTimer::singleShot(0, this, &JobWindow::Ended);
}

void JobWindow::WritePicture() {
    const QString file = std::exchange(m_job.picture, QString());
    QTimer::singleShot(0, this, [this, file] {
        const bool written = grab().save(file, "PNG");
        End(written ? 0 : 5, file + ": cannot be written; check the folder and its permissions.");
    });
}

}  // namespace zm::view
