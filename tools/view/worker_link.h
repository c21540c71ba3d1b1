// The way to the process that keeps the map: its start and end, messages, and the memory that both share.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QImage>
#include <QJsonObject>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <map>

#include "tools/kit/shared_picture.h"

namespace zm::view {

class WorkerLink : public QObject {
    Q_OBJECT
 public:
    /// Starts the process: PROGRAM VERB --worker=FD ARGUMENTS.
    WorkerLink(QString program, QStringList verb, QStringList arguments, QObject* owner);
    ~WorkerLink() override;

    bool valid() const { return m_memory != nullptr; }
    /// From now on, while anything is awaited of the process, one that was stopped, that has the map and works for half a
    /// second of processor time without a step (SharedHead), or that answers nothing for so many milliseconds, has ended.
    void Watch(int longestAnswer = 10000);
    /// From now on a picture of this number is the one that is wanted; an older one is not finished.
    void WantNumber(quint32 number);
    void Send(const QJsonObject& message);
    /// Sends a question and hands its answer on. A worker that ends answers nothing.
    void Ask(QJsonObject question, std::function<void(const QJsonObject&)> answered);
    /// The picture in a slot, without a copy.
    QImage Picture(int slot, QSize pixels) const;
    qint64 processId() const { return m_process->processId(); }

 signals:
    void Said(const QJsonObject& message);
    /// The process is gone, or hangs; crashed: not of its own will.
    void Ended(bool crashed, int status, const QString& lastWords);

 private:
    void TakeBytes();
    void TakeMessage(const QJsonObject& message);
    bool owes() const { return !m_ready || m_drawing != 0 || m_asked.size() > (m_pinged ? 1U : 0U); }
    void WatchOn();
    struct Life {
        bool stopped = false;
        double worked = 0.0;  // seconds of processor time
    };
    Life LifeOfProcess() const;
    bool WorksWithoutStep(double worked);
    void Look();
    void End(bool crashed);

    QProcess* m_process;
    QTimer m_watch;
    QElapsedTimer m_sincePing;
    int m_longestAnswer = 0;
    int m_stopped = 0;      // looks in a row that met it stopped
    quint32 m_steps = 0;    // at the last look
    double m_worked = 0.0;  // when they were last seen to change
    qint64 m_drawing = 0;   // the number of the picture that is awaited, 0 for none
    bool m_ready = false, m_pinged = false, m_ended = false;
    QByteArray m_bytes, m_words;
    int m_file = -1;
    void* m_memory = nullptr;
    int m_lastId = 0;
    std::map<int, std::function<void(const QJsonObject&)>> m_asked;
};

}  // namespace zm::view
