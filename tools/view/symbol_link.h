// The way to the process that works for the window of symbols. Questions go one at a time, so that one that hangs or
// ends the process is known, answered in its place, and not asked again.
#pragma once

#include <QImage>
#include <QJsonObject>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <deque>
#include <functional>

namespace zm::view {

class WorkerLink;

class SymbolLink : public QObject {
    Q_OBJECT
 public:
    using Answered = std::function<void(const QJsonObject&)>;
    SymbolLink(QString program, QStringList options, QObject* owner);
    ~SymbolLink() override;

    /// Asks when its turn comes. What waits under the same topic is dropped, unanswered.
    void Ask(const QString& topic, QJsonObject question, Answered answered);
    /// Nothing is asked, but perhaps questions of one topic.
    bool idle(const QString& besides) const;
    /// The picture of the answer that has just come.
    QImage Picture(QSize pixels) const;
    /// Of the process, 0 while there is none.
    qint64 processId() const;

 signals:
    /// A question was given up: the process hung or ended. It is answered with an "error".
    void Lost();
    void Idle();

 private:
    struct Question {
        QString topic;
        QJsonObject json;
        Answered answered;
    };
    void Start();
    void Next();
    void Take(const QJsonObject& answer);
    void GiveUp();

    QString m_program;
    QStringList m_options;
    WorkerLink* m_link = nullptr;
    bool m_met = false;  // this process has answered
    bool m_waiting = false;
    Question m_asked;
    std::deque<Question> m_queue;
    QTimer m_patience;
};

}  // namespace zm::view
