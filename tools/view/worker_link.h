// The way to the process that keeps the map: its start and end, messages, and the memory that both share.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QJsonObject>
#include <QObject>
#include <QProcess>
#include <QStringList>
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
    /// The process is gone; crashed: by a signal.
    void Ended(bool crashed, int status, const QString& lastWords);

 private:
    void TakeBytes();

    QProcess* m_process;
    QByteArray m_bytes, m_words;
    int m_file = -1;
    void* m_memory = nullptr;
    int m_lastId = 0;
    std::map<int, std::function<void(const QJsonObject&)>> m_asked;
};

}  // namespace zm::view
