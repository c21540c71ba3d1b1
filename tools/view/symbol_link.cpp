#include "tools/view/symbol_link.h"

#include <algorithm>
#include <utility>

#include "tools/view/phrases.h"
#include "tools/view/worker_link.h"

namespace zm::view {
namespace {

constexpr int kPatience = 2000;        // milliseconds for an answer
constexpr int kStartPatience = 20000;  // for the first one of a process

}  // namespace

SymbolLink::SymbolLink(QString program, QStringList options, QObject* owner)
    : QObject(owner), m_program(std::move(program)), m_options(std::move(options)) {
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &SymbolLink::GiveUp);
}

SymbolLink::~SymbolLink() = default;

void SymbolLink::Start() {
    m_met = false;
    m_link = new WorkerLink(m_program, {"symbols", "view"}, m_options, this);
    connect(m_link, &WorkerLink::Ended, this, &SymbolLink::GiveUp);
}

void SymbolLink::Ask(const QString& topic, QJsonObject question, Answered answered) {
    m_queue.erase(std::remove_if(m_queue.begin(), m_queue.end(), [&](const Question& q) { return q.topic == topic; }),
                  m_queue.end());
    m_queue.push_back({topic, std::move(question), std::move(answered)});
    Next();
}

bool SymbolLink::idle(const QString& besides) const {
    return (!m_waiting || m_asked.topic == besides) &&
           std::all_of(m_queue.begin(), m_queue.end(), [&](const Question& q) { return q.topic == besides; });
}

void SymbolLink::Next() {
    if (m_waiting) return;
    if (m_queue.empty()) {
        emit Idle();
        return;
    }
    m_asked = std::move(m_queue.front());
    m_queue.pop_front();
    if (m_link == nullptr) Start();
    m_waiting = true;
    if (!m_link->valid()) return GiveUp();
    m_patience.start(m_met ? kPatience : kStartPatience);
    m_link->Ask(m_asked.json, [this](const QJsonObject& answer) {
        m_met = true;
        Take(answer);
    });
}

void SymbolLink::Take(const QJsonObject& answer) {
    m_patience.stop();
    const Question asked = std::exchange(m_asked, {});
    asked.answered(answer);  // before the next question: the picture is in the shared memory until then
    m_waiting = false;
    Next();
}

void SymbolLink::GiveUp() {
    if (m_link != nullptr) m_link->deleteLater();
    if (m_link != nullptr) m_link->disconnect(this);
    m_link = nullptr;
    if (!m_waiting) return;
    emit Lost();
    Take({{"error", Say("The process that draws hung or ended at this text and is started again.")}, {"lost", true}});
}

QImage SymbolLink::Picture(QSize pixels) const {
    return m_link != nullptr ? m_link->Picture(0, pixels).copy() : QImage();
}

qint64 SymbolLink::processId() const {
    return m_link != nullptr ? m_link->processId() : 0;
}

}  // namespace zm::view
