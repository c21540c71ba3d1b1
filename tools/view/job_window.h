// A window that is opened for a job of the program, and ends with an exit status.
#pragma once

#include <QMainWindow>

#include "tools/view/view_job.h"

namespace zm::view {

class JobWindow : public QMainWindow {
    Q_OBJECT
 public:
    explicit JobWindow(const ViewJob& job, QWidget* owner = nullptr) : QMainWindow(owner, Qt::Window), m_job(job) {}

    /// The exit status of the program, and why it is not 0.
    int status() const { return m_status; }
    const QString& reason() const { return m_reason; }

 signals:
    /// It was closed, or its work is done.
    void Ended();

 protected:
    void End(int status, const QString& reason);
    /// Takes the file of the picture out of the job, writes it in the next turn of the loop, and ends.
    void WritePicture();

    ViewJob m_job;
    QString m_reason;

 private:
    int m_status = 0;
};

}  // namespace zm::view
