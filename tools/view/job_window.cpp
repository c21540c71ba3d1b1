#include "tools/view/job_window.h"

#include <QPixmap>
#include <QSaveFile>
#include <QTimer>
#include <filesystem>
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
        QSaveFile out(file);  // what is there stays until the picture is whole
        // Anything else Qt would write to, or put a file in its place.
        const std::filesystem::path there(file.toStdU16String());
        std::error_code error;
        const bool regular = !std::filesystem::exists(there, error) || std::filesystem::is_regular_file(there, error);
        const bool written = regular && out.open(QIODevice::WriteOnly) && grab().save(&out, "PNG") && out.commit();
        End(written ? 0 : 5, file + ": cannot be written; check the folder and its permissions.");
    });
}

}  // namespace zm::view
